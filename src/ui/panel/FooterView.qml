import QtQuick
import Portolan

// When the list was last brought up to date, and the way out.
Rectangle {
    id: root

    required property date lastUpdated
    required property int tick

    signal quit

    implicitHeight: 44
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
        // Time passes without telling: the tick says when to look again.
        text: root.tick >= 0 ? RelativeTime.sinceUpdate(root.lastUpdated) : ""
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
