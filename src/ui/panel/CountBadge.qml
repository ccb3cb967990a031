// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The number of services that answer, and of all known ones.
RoundedRect {
    id: root

    required property int runningCount
    required property int totalCount

    implicitWidth: content.width + 18
    implicitHeight: content.height + 10
    radius: root.height / 2
    color: Theme.card
    borderColor: Theme.border
    Accessible.role: Accessible.StaticText
    Accessible.name: label.text

    Row {
        id: content

        anchors.centerIn: parent
        spacing: 6

        Dot {
            anchors.verticalCenter: parent.verticalCenter
            color: root.runningCount >= 1 ? Theme.online : Theme.textFaint
        }

        Text {
            id: label

            anchors.verticalCenter: parent.verticalCenter
            text: root.runningCount + "/" + root.totalCount
            textFormat: Text.PlainText
            font: Fonts.digits(12, Font.Medium)
            color: Theme.text
        }
    }
}
