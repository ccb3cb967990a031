// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// A button of the footer: a symbol and a label.
PlainButton {
    id: root

    required property string symbol

    readonly property color foreground: root.hovering ? Theme.textStrong : Theme.textMuted

    implicitWidth: content.width + 20
    implicitHeight: 28
    radius: 8
    toolTip: ""

    Row {
        id: content

        anchors.centerIn: parent
        spacing: 5

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: root.symbol
            size: 11
            weight: Font.DemiBold
            color: root.foreground
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: root.label
            textFormat: Text.PlainText
            font: Fonts.system(12, Font.Medium)
            color: root.foreground
        }
    }
}
