// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The Refresh button, replaced by a spinner during a scan. The button is made transparent, not hidden, so that it keeps
// the focus.
Item {
    id: root

    required property ServiceStore store

    implicitWidth: 28
    implicitHeight: 28

    HeaderIconButton {
        id: button

        anchors.fill: parent
        opacity: root.store.isScanning ? 0 : 1
        symbol: "arrow.clockwise"
        label: "Refresh"
        toolTip: root.store.isScanning ? "" : button.label
        Accessible.ignored: root.store.isScanning
        onClicked: root.store.refresh()
    }

    Spinner {
        anchors.centerIn: parent
        width: 11.2
        height: 11.2
        visible: root.store.isScanning
    }

    FocusRing {
        control: button
        radius: 7
    }
}
