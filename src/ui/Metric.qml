import QtQuick
import Portolan

// One figure about a process.
Row {
    id: root

    required property string symbol
    required property string value

    property real room: Infinity

    spacing: 3

    Symbol {
        id: icon

        anchors.verticalCenter: parent.verticalCenter
        name: root.symbol
        size: 8.5
        color: Theme.textFaint
    }

    Text {
        id: text

        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(0, Math.min(text.implicitWidth, root.room - icon.width - root.spacing))
        text: root.value
        textFormat: Text.PlainText
        font: Fonts.digits(10, Font.Medium)
        color: Theme.textFaint
        elide: Text.ElideRight
    }
}
