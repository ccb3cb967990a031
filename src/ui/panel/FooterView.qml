// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The time of the last update, and the Quit button.
RoundedRect {
    id: root

    required property date lastUpdated
    required property int tick

    signal quit

    implicitHeight: 44
    openEdge: Qt.TopEdge
    color: Theme.elevated

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.border
    }

    PlainLabel {
        id: age

        x: 14
        anchors.verticalCenter: parent.verticalCenter
        width: quitButton.x - 8 - age.x
        visible: age.text !== ""
        // The text depends on the current time, so every tick evaluates it again.
        text: root.tick >= 0 ? ServicePresentation.sinceUpdate(root.lastUpdated) : ""
        font: Fonts.system(11)
        color: Theme.textFaint
        elide: Text.ElideRight
    }

    FooterButton {
        id: quitButton

        anchors.right: parent.right
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        symbol: "power"
        label: "Quit"
        onClicked: root.quit()
    }
}
