import QtQuick
import Portolan

// Asks for a scan, and turns for as long as one takes.
Item {
    id: root

    required property ServiceStore store

    implicitWidth: 28
    implicitHeight: 28

    HeaderIconButton {
        anchors.fill: parent
        visible: !root.store.isScanning
        symbol: "arrow.clockwise"
        label: "Refresh"
        onClicked: root.store.refreshNow()
    }

    Spinner {
        anchors.centerIn: parent
        visible: root.store.isScanning
        scale: 0.7
    }
}
