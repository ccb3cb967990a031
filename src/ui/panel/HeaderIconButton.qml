import QtQuick
import Portolan

// A button of the header.
PlainButton {
    id: root

    required property string symbol
    required property string label

    implicitWidth: 28
    implicitHeight: 28
    name: root.label
    toolTip: root.label

    RoundedRect {
        anchors.fill: parent
        radius: root.radius
        color: Theme.cardHover
        visible: root.hovering
    }

    Symbol {
        anchors.centerIn: parent
        name: root.symbol
        size: 12.5
        weight: Font.DemiBold
        color: root.hovering ? Theme.textStrong : Theme.textMuted
    }
}
