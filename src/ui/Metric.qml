import QtQuick
import Portolan

// One figure about a process.
Row {
    id: root

    required property string symbol
    required property string value

    spacing: 3

    Symbol {
        anchors.verticalCenter: parent.verticalCenter
        name: root.symbol
        size: 8.5
        color: Theme.textFaint
    }

    Text {
        anchors.verticalCenter: parent.verticalCenter
        text: root.value
        textFormat: Text.PlainText
        font: Fonts.digits(10, Font.Medium)
        color: Theme.textFaint
    }
}
