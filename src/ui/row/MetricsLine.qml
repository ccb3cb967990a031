// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// Uptime, CPU and memory of a process; each is hidden if there is not enough space for it.
Item {
    id: root

    required property processStats stats
    required property real room

    readonly property real spacing: 9
    readonly property real topPadding: 1

    implicitHeight: root.topPadding + uptime.height

    Metric {
        id: uptime

        y: root.topPadding
        visible: uptime.width <= root.room
        symbol: "clock"
        value: root.stats.uptimeText
    }

    Metric {
        id: cpu

        x: uptime.width + root.spacing
        y: root.topPadding
        visible: cpu.x + cpu.width <= root.room
        symbol: "cpu"
        value: root.stats.cpuText
    }

    Metric {
        id: memory

        x: cpu.x + cpu.width + root.spacing
        y: root.topPadding
        visible: memory.x + memory.width <= root.room
        symbol: "memorychip"
        value: root.stats.memoryText
    }
}
