import QtQuick
import Portolan

// What a process has used so far.
Row {
    id: root

    required property processStats stats
    required property real room

    spacing: 9
    topPadding: 1

    Metric {
        id: uptime

        symbol: "clock"
        value: root.stats.uptimeText
    }

    Metric {
        id: cpu

        symbol: "cpu"
        value: root.stats.cpuText
    }

    Metric {
        symbol: "memorychip"
        value: root.stats.memoryText
        room: root.room - uptime.width - cpu.width - 2 * root.spacing
    }
}
