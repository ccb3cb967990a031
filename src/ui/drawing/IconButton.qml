// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// A button that shows a symbol.
PlainButton {
    id: root

    required property string symbol

    property bool showsSymbol: true
    property real symbolSize: 12.5
    property int weight: Font.DemiBold
    property color tint: root.hovering ? Theme.textStrong : Theme.textMuted

    Symbol {
        anchors.centerIn: parent
        visible: root.showsSymbol
        name: root.symbol
        size: root.symbolSize
        weight: root.weight
        color: root.tint
    }
}
