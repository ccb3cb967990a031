import QtQuick
import Portolan

// A list of rows as it looks and moves, and what its delegate asks for.
ListView {
    id: root

    required property ServiceActions actions

    signal stop(service: service)
    signal togglePin(service: service)

    // Makes a row the current one and shows it whole. Positioning it in so many words also ends what a new current row
    // begins: that the list follows it to wherever a refresh moves it.
    function makeCurrent(index: int) {
        root.currentIndex = index;
        root.positionViewAtIndex(index, ListView.Contain);
    }

    clip: true
    spacing: 8
    cacheBuffer: 72 // about a row ahead of each end: the usual five at each take a megabyte
    bottomMargin: 12
    boundsBehavior: root.contentHeight > root.height ? Flickable.DragAndOvershootBounds : Flickable.StopAtBounds
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
