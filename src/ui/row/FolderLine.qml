// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The folder of a service.
Item {
    id: root

    required property string folder
    required property real room

    implicitHeight: Math.max(icon.height, path.height)

    Symbol {
        id: icon

        anchors.verticalCenter: parent.verticalCenter
        name: "folder"
        size: 9
        color: Theme.textFaint
    }

    ScaledText {
        id: path

        x: icon.width + 4
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(0, Math.min(path.implicitWidth, root.room - path.x))
        text: DisplayText.path(root.folder)
        horizontalAlignment: Text.AlignLeft
        maximumLineCount: 1
        font: Fonts.system(10.5)
        color: Theme.textFaint
        elide: Text.ElideMiddle
    }
}
