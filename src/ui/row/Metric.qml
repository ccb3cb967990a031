// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// One statistic of a process.
Item {
    id: root

    required property string symbol
    required property string value

    implicitWidth: label.x + label.width
    implicitHeight: Math.max(icon.height, label.height)

    Symbol {
        id: icon

        anchors.verticalCenter: parent.verticalCenter
        name: root.symbol
        size: 8.5
        color: Theme.textFaint
    }

    Text {
        id: label

        x: icon.width + 3
        anchors.verticalCenter: parent.verticalCenter
        text: root.value
        textFormat: Text.PlainText
        font: Fonts.digits(10, Font.Medium)
        color: Theme.textFaint
    }
}
