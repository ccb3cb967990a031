// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The title of the entries below it.
Item {
    id: root

    required property string text

    implicitWidth: label.x + label.implicitWidth + 28
    implicitHeight: 24
    Accessible.role: Accessible.StaticText
    Accessible.name: root.text

    Text {
        id: label

        x: 10
        anchors.verticalCenter: parent.verticalCenter
        text: root.text
        textFormat: Text.PlainText
        font: Fonts.system(11, Font.Medium)
        color: Theme.textMuted
    }
}
