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
    readonly property int shown: ContentState.of(root.store.serviceCount > 0, root.store.isScanning, root.services.count > 0)

    implicitHeight: root.shown === ContentState.List ? list.implicitHeight : root.shown === ContentState.Loading ? loading.implicitHeight : empty.implicitHeight

    ServiceListView {
        id: list

        anchors.fill: parent
        visible: root.shown === ContentState.List
        services: root.services
        actions: root.actions
    }

    LoadingView {
        id: loading

        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        visible: root.shown === ContentState.Loading
    }

    EmptyStateView {
        id: empty

        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        visible: root.shown === ContentState.Empty
        isSearching: root.store.searchText !== ""
    }
}
