// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The health of a service and its response time.
Column {
    id: root

    required property health health

    readonly property color stateColor: ServicePresentation.stateColor(root.health)

    spacing: 3

    Row {
        anchors.right: parent.right
        spacing: 6

        Dot {
            anchors.verticalCenter: parent.verticalCenter
            color: root.stateColor
        }

        ScaledText {
            anchors.verticalCenter: parent.verticalCenter
            text: ServicePresentation.stateLabel(root.health)
            font: Fonts.system(11.5, Font.Medium)
            color: root.stateColor
            opacity: 0.9
        }
    }

    Text {
        id: responseTime

        anchors.right: parent.right
        visible: responseTime.text !== ""
        text: ServicePresentation.responseTime(root.health)
        textFormat: Text.PlainText
        font: Fonts.monospaced(10, Font.Medium)
        color: Theme.textFaint
    }
}
