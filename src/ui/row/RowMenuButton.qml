import QtQuick
import Portolan

// Opens the menu of a row.
PlainButton {
    id: root

    implicitWidth: 26
    implicitHeight: 26
    name: "More"
    Accessible.role: Accessible.ButtonMenu

    RoundedRect {
        anchors.fill: parent
        radius: root.radius
        color: Qt.rgba(1, 1, 1, 0.04)
    }

    Symbol {
        anchors.centerIn: parent
        name: "ellipsis"
        size: 12
        weight: Font.DemiBold
        color: Theme.textMuted
    }
}
