import QtQuick
import Portolan

// Chooses one of the orders that the list can have.
MenuEntry {
    id: root

    required property ServiceStore store
    required property sortOrder order

    text: root.order.label
    isCheckable: true
    isChecked: root.store.sortOrderId === root.order.id
    onTriggered: root.store.sortOrderId = root.order.id
}
