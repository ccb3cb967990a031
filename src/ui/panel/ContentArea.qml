// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The part between search field and footer: the progress of the first scan, the list, or the reason why it is empty.
Item {
    id: root

    required property ServiceStore store
    required property ServiceActions actions

    readonly property VisibleServicesModel services: VisibleServicesModel {
        store: root.store
    }
    readonly property bool isLoading: root.store.serviceCount === 0 && root.store.isScanning
    readonly property bool isFirstScan: isNaN(root.store.lastUpdated)
    property bool isLong: false
    // A later scan mostly takes some milliseconds, for which nothing should flash.
    readonly property bool showsLoading: root.isLoading && (root.isFirstScan || root.isLong)
    readonly property bool showsList: !root.isLoading && root.services.count > 0

    implicitHeight: root.showsList ? list.implicitHeight : Math.max(loading.implicitHeight, empty.implicitHeight)
    onIsLoadingChanged: root.isLong = false

    Timer {
        interval: 300
        running: root.isLoading
        onTriggered: root.isLong = true
    }

    ServiceListView {
        id: list

        anchors.fill: parent
        visible: root.showsList
        services: root.services
        actions: root.actions
    }

    LoadingView {
        id: loading

        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        visible: root.showsLoading
    }

    EmptyStateView {
        id: empty

        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        visible: !root.showsList && !root.showsLoading
        isSearching: root.store.searchText !== ""
    }
}
