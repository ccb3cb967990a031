// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The address and the process id of a service. The process id is hidden if there is not enough space for all of it.
Item {
    id: root

    required property string address
    required property int pid
    required property real room

    readonly property real spacing: 5

    implicitHeight: Math.max(where.height, dot.height, process.height)

    ScaledText {
        id: where

        width: Math.min(where.implicitWidth, root.room)
        anchors.verticalCenter: parent.verticalCenter
        text: root.address
        font: Fonts.monospaced(11.5, Font.Medium)
        color: Theme.textMuted
        elide: Text.ElideRight
    }

    Text {
        id: dot

        x: where.width + root.spacing
        anchors.verticalCenter: parent.verticalCenter
        visible: process.visible
        text: "·"
        textFormat: Text.PlainText
        font: Fonts.system(13)
        color: Theme.textFaint
    }

    Text {
        id: process

        x: dot.x + dot.width + root.spacing
        anchors.verticalCenter: parent.verticalCenter
        visible: process.x + process.width <= root.room
        text: "pid " + root.pid
        textFormat: Text.PlainText
        font: Fonts.system(11)
        color: Theme.textFaint
    }
}
