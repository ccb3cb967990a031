// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// Selects one sort order.
MenuEntry {
    id: root

    required property ServiceStore store
    required property sortOrder order

    text: root.order.label
    isCheckable: true
    isChecked: root.store.sortOrderId === root.order.id
    onTriggered: root.store.sortOrderId = root.order.id
}
