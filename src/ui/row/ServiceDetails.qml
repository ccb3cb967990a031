// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The lines of text about a service. They are placed by bindings, not by a Column, because a Column sets its height one
// frame later, and a ListView positions its rows by the height that they have when they are created.
Item {
    id: root

    required property service service
    required property bool isPinned

    readonly property real spacing: 2
    readonly property real endOfFolder: root.service.hasFolder ? folder.y + folder.height : address.y + address.height

    implicitHeight: root.service.hasStats ? metrics.y + metrics.height : root.endOfFolder

    TitleLine {
        id: title

        title: root.service.displayName
        framework: root.service.framework
        isPinned: root.isPinned
        room: root.width
    }

    AddressLine {
        id: address

        y: title.height + root.spacing
        address: ServicePresentation.address(root.service)
        pid: root.service.pid
        room: root.width
    }

    FolderLine {
        id: folder

        y: address.y + address.height + root.spacing
        visible: root.service.hasFolder
        folder: root.service.folder
        room: root.width
    }

    MetricsLine {
        id: metrics

        y: root.endOfFolder + root.spacing
        visible: root.service.hasStats
        stats: root.service.stats
        room: root.width
    }
}
