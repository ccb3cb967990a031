// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The name of a service and its framework.
Item {
    id: root

    required property string title
    required property framework framework
    required property bool isPinned
    required property real room

    readonly property real spacing: 6

    implicitWidth: kind.x + kind.width
    implicitHeight: Math.max(name.height, kind.height)

    Symbol {
        id: pin

        anchors.verticalCenter: parent.verticalCenter
        visible: root.isPinned
        name: "pin.fill"
        size: 8.5
        color: Theme.accent
    }

    ScaledText {
        id: name

        x: root.isPinned ? pin.width + root.spacing : 0
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(0, Math.min(name.implicitWidth, root.room - name.x - root.spacing - kind.width))
        text: DisplayText.line(root.title)
        horizontalAlignment: Text.AlignLeft
        maximumLineCount: 1
        font: Fonts.system(13.5, Font.DemiBold)
        color: Theme.textStrong
        elide: Text.ElideRight
    }

    ScaledText {
        id: kind

        x: name.x + Math.min(name.width, name.paintedWidth) + root.spacing
        anchors.verticalCenter: parent.verticalCenter
        text: root.framework.rawValue.toUpperCase()
        font: Fonts.system(8.5, Font.DemiBold, 0.4)
        color: Theme.textFaint
    }
}
