import QtQuick
import Portolan

// What the list is, and how long.
Item {
    id: root

    required property string text
    required property int count

    implicitHeight: name.implicitHeight + 8

    Text {
        id: name

        x: 16
        text: root.text
        textFormat: Text.PlainText
        font: Fonts.system(10, Font.DemiBold, 0.8)
        color: Theme.textFaint
    }

    Text {
        anchors.right: parent.right
        anchors.rightMargin: 16
        text: root.count
        textFormat: Text.PlainText
        font: Fonts.digits(10, Font.DemiBold)
        color: Theme.textFaint
    }
}
