import QtQuick
import Portolan

// How the list is ordered and kept up to date. Exists only while it is open.
Loader {
    id: root

    required property ServiceStore store
    required property bool launchAtLogin

    signal launchAtLoginToggled

    active: false
    sourceComponent: MenuWindow {
        owner: root.parent
        anchor: Qt.rect(0, 0, root.parent.width, root.parent.height)
        onClosed: root.active = false

        MenuHeading {
            text: "Sort by"
        }
        Repeater {
            model: root.store.sortOrders

            MenuEntry {
                required property sortOrder modelData

                text: modelData.label
                isCheckable: true
                isChecked: root.store.sortOrderId === modelData.id
                onTriggered: root.store.sortOrderId = modelData.id
            }
        }
        Item {
            implicitWidth: 1
            implicitHeight: 6
        }
        MenuEntry {
            text: "Auto-refresh"
            isCheckable: true
            isChecked: root.store.autoRefresh
            onTriggered: root.store.autoRefresh = !root.store.autoRefresh
        }
        MenuEntry {
            text: "Launch at Login"
            isCheckable: true
            isChecked: root.launchAtLogin
            onTriggered: root.launchAtLoginToggled()
        }
        MenuSeparator {}
        MenuEntry {
            text: "Refresh Now"
            onTriggered: root.store.refreshNow()
        }
    }
}
