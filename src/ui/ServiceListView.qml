import QtQuick
import Portolan

// The rows under their label.
Item {
    id: root

    required property VisibleServicesModel services
    required property ServiceActions actions


    signal stop(service: service)
    signal togglePin(service: service)

    implicitHeight: rows.y + Math.max(300, Math.min(470, rows.contentHeight + rows.bottomMargin))

    SectionLabel {
        id: label

        y: 2
        width: parent.width
        text: "SERVICES"
        count: root.services.count
    }

    ListView {
        id: rows

        anchors.fill: parent
        anchors.topMargin: label.y + label.height
        anchors.leftMargin: 14
        anchors.rightMargin: 14
        clip: true
        spacing: 8
        bottomMargin: 12
        boundsBehavior: rows.contentHeight > rows.height ? Flickable.DragAndOvershootBounds : Flickable.StopAtBounds
        model: root.services
        activeFocusOnTab: !rows.activeFocus
        highlightMoveDuration: 0
        Accessible.role: Accessible.List
        Accessible.name: "Services"

        delegate: ServiceRowView {
            id: row

            width: ListView.view.width
            actions: root.actions
            trailingWidth: 128
            onStop: root.stop(row.service)
            onTogglePin: root.togglePin(row.service)
        }

        add: Transition {
            EaseOut {
                property: "opacity"
                from: 0
                to: 1
                duration: 180
            }
        }
        remove: Transition {
            EaseOut {
                property: "opacity"
                to: 0
                duration: 180
            }
        }
        move: RowSlide {}
        displaced: RowSlide {}
    }
}
