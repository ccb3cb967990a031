// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The label of a keyboard shortcut.
RoundedRect {
    id: root

    required property string text

    implicitWidth: label.implicitWidth + 10
    implicitHeight: label.implicitHeight + 4
    radius: 4
    borderColor: Theme.border

    Text {
        id: label

        anchors.centerIn: parent
        text: root.text
        textFormat: Text.PlainText
        font: Fonts.system(10, Font.Medium)
        color: Theme.textFaint
    }
}
