// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// Sort order, auto-refresh and launch at login.
PopupMenu {
    id: root

    required property ServiceStore store
    required property LoginItem loginItem

    // The state when the menu opens. Only the login item changes it, so the mark shows the result of a change.
    readonly property bool launchAtLogin: root.loginItem.isEnabled()

    Accessible.name: "Settings"

    PlainLabel {
        height: 24
        leftPadding: 10
        rightPadding: 28
        verticalAlignment: Text.AlignVCenter
        text: "Sort by"
        font: Fonts.system(11, Font.Medium)
        color: Theme.textMuted
    }
    SortEntry {
        store: root.store
        order: root.store.sortOrders[0]
    }
    SortEntry {
        store: root.store
        order: root.store.sortOrders[1]
    }
    SortEntry {
        store: root.store
        order: root.store.sortOrders[2]
    }
    SortEntry {
        store: root.store
        order: root.store.sortOrders[3]
    }
    Item {
        implicitWidth: 1 // a Column skips items without a width
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
        onTriggered: root.loginItem.setEnabled(!root.launchAtLogin)
    }
    MenuSeparator {}
    MenuEntry {
        text: "Refresh Now"
        isIndented: true
        onTriggered: root.store.refresh()
    }
}
