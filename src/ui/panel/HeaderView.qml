// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The bar at the top: brand, number of services, settings, detach and refresh.
RoundedRect {
    id: root

    required property ServiceStore store
    required property LoginItem loginItem

    property bool canDetach: false
    property real leadingInset: 0

    signal detach

    implicitHeight: 52
    openEdge: Qt.BottomEdge
    color: Theme.elevated

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.border
    }

    BrandMark {
        id: mark

        x: root.leadingInset + 14
        anchors.verticalCenter: parent.verticalCenter
    }

    PlainLabel {
        anchors.left: mark.right
        anchors.leftMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        text: "Portolan"
        font: Fonts.system(15, Font.DemiBold, -0.2)
        color: Theme.textStrong
    }

    Row {
        anchors.right: parent.right
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8

        CountBadge {
            anchors.verticalCenter: parent.verticalCenter
            runningCount: root.store.runningCount
            totalCount: root.store.serviceCount
        }

        SettingsButton {
            store: root.store
            loginItem: root.loginItem
        }

        HeaderIconButton {
            visible: root.canDetach
            symbol: "macwindow"
            label: "Open in window"
            onClicked: root.detach()
        }

        RefreshControl {
            store: root.store
        }
    }
}
