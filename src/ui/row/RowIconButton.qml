import QtQuick
import Portolan

// A button of a row.
PlainButton {
    id: root

    required property string symbol
    required property string help

    property color tint: "transparent"

    implicitWidth: 26
    implicitHeight: 26
    name: root.help
    toolTip: root.help

    RoundedRect {
        anchors.fill: parent
        radius: root.radius
        color: root.hovering ? Theme.cardHover : Qt.rgba(1, 1, 1, 0.04)
    }

    Symbol {
        anchors.centerIn: parent
        name: root.symbol
        size: 11.5
        weight: Font.DemiBold
        color: root.tint.a > 0 ? root.tint : root.hovering ? Theme.textStrong : Theme.textMuted
    }
}
