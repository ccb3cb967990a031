import QtQuick
import Portolan

// A list of rows as it looks and moves, and what its delegate asks for.
ListView {
    id: root

    required property ServiceActions actions

    signal stop(service: service)
    signal togglePin(service: service)

    clip: true
    spacing: 8
    bottomMargin: 12
    boundsBehavior: root.contentHeight > root.height ? Flickable.DragAndOvershootBounds : Flickable.StopAtBounds
    // The view moves for the keyboard alone, not because a refresh gave the current row another place.
    highlightFollowsCurrentItem: false
    keyNavigationEnabled: true
    Accessible.role: Accessible.List
    Accessible.name: "Services"

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
