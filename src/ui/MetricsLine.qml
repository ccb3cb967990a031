import QtQuick
import Portolan

// What a process has used so far: of the three figures those that can be shown whole.
Row {
    id: root

    required property processStats stats
    required property real room

    spacing: 9
    topPadding: 1

    Metric {
        id: uptime

        visible: uptime.implicitWidth <= root.room
        symbol: "clock"
        value: root.stats.uptimeText
    }

    Metric {
        id: cpu

        readonly property real end: uptime.implicitWidth + root.spacing + cpu.implicitWidth

        visible: cpu.end <= root.room
        symbol: "cpu"
        value: root.stats.cpuText
    }

    Metric {
        id: memory

        visible: cpu.end + root.spacing + memory.implicitWidth <= root.room
        symbol: "memorychip"
        value: root.stats.memoryText
    }
}
