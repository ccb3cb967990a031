import QtQuick
import Portolan

// What is known about a service, line by line. No line is wider than the block.
Column {
    id: root

    required property service service
    required property bool isPinned

    spacing: 2

    TitleLine {
        title: root.service.displayName
        framework: root.service.framework
        isPinned: root.isPinned
        room: root.width
    }

    AddressLine {
        address: ServicePresentation.address(root.service)
        pid: root.service.pid
        room: root.width
    }

    FolderLine {
        visible: root.service.hasFolder
        folder: root.service.folder
        room: root.width
    }

    MetricsLine {
        visible: root.service.hasStats
        stats: root.service.stats
        room: root.width
    }
}
