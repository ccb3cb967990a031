// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The Refresh button. During a scan it shows a spinner instead of its symbol, and keeps the focus.
HeaderIconButton {
    id: root

    required property ServiceStore store

    symbol: "arrow.clockwise"
    showsSymbol: !root.store.isScanning
    background: root.hovering && root.showsSymbol ? Theme.cardHover : "transparent"
    label: "Refresh"
    toolTip: root.showsSymbol ? root.label : ""
    Accessible.ignored: root.store.isScanning
    onClicked: root.store.refresh()

    Spinner {
        anchors.centerIn: parent
        width: 11.2
        height: 11.2
        visible: root.store.isScanning
    }
}
