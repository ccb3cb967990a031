import QtQuick
import Portolan

// Where a service answers, and which process that is.
Row {
    id: root

    required property int port
    required property int pid
    required property real room

    spacing: 5

    ExactText {
        id: address

        anchors.verticalCenter: parent.verticalCenter
        text: "localhost:" + root.port
        font: Fonts.monospaced(11.5, Font.Medium)
        color: Theme.textMuted
    }

    Text {
        id: dot

        anchors.verticalCenter: parent.verticalCenter
        text: "·"
        textFormat: Text.PlainText
        font: Fonts.system(13)
        color: Theme.textFaint
    }

    Text {
        id: process

        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(0, Math.min(process.implicitWidth, root.room - address.width - dot.width - 2 * root.spacing))
        text: "pid " + root.pid
        textFormat: Text.PlainText
        font: Fonts.system(11)
        color: Theme.textFaint
        elide: Text.ElideRight
    }
}
