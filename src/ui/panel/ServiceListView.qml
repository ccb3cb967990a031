// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The list of services with its title.
Item {
    id: root

    required property VisibleServicesModel services
    required property ServiceActions actions

    implicitHeight: label.y + label.height + Math.max(300, Math.min(470, rows.contentHeight + rows.bottomMargin))

    SectionLabel {
        id: label

        y: 2
        width: parent.width
        text: "SERVICES"
        count: root.services.count
    }

    // The rows are clipped a point outside of them: at a fractional scale the edge of the clip and that of a card may be
    // rounded to different pixels, and the card would lose its border.
    Item {
        anchors.fill: parent
        anchors.topMargin: label.y + label.height - 1
        anchors.leftMargin: 13
        anchors.rightMargin: 13
        clip: true

        ServiceRows {
            id: rows

            anchors.fill: parent
            anchors.topMargin: 1
            anchors.leftMargin: 1
            anchors.rightMargin: 1
            store: root.services.store
            actions: root.actions
            model: root.services

            delegate: ServiceRowView {
                id: row

                required property int index

                readonly property ServiceRows rows: row.ListView.view as ServiceRows

                width: row.rows ? row.rows.width : 0
                actions: row.rows ? row.rows.actions : null
                isCurrent: row.ListView.isCurrentItem
                onTogglePin: row.rows.store.togglePin(row.service)
                onActiveFocusChanged: {
                    if (row.activeFocus)
                        row.rows.makeCurrent(row.index);
                }
                // The list never destroys the delegate of the current row, so its menu stays open.
                onMenuChanged: {
                    if (row.menu)
                        row.rows.makeCurrent(row.index);
                }
                ListView.onRemove: row.enabled = false
            }
        }

        PressGuard {
            anchors.fill: rows
            rows: rows.contentItem
        }
    }

    Connections {
        target: root.actions

        function onStopRequested() {
            Presses.holdKeys();
        }
    }
}
