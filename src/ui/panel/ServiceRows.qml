// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The ListView of the services with its transitions.
ListView {
    id: root

    required property ServiceStore store
    required property ServiceActions actions

    // Makes a row the current one and scrolls it into view. Calling positionViewAtIndex() also stops the list from
    // following the new current item when a refresh moves it.
    function makeCurrent(index: int) {
        root.currentIndex = index;
        root.positionViewAtIndex(index, ListView.Contain);
    }

    // A ListView leaves the current row where it is, under another one, when inserted rows push it out of view.
    function settleCurrent() {
        if (!root.currentItem || root.itemAtIndex(root.currentIndex))
            return; // the view has placed it
        const there = root.indexAt(1, root.currentItem.y + 1);
        if (there < 0)
            return;
        const row = root.currentItem as ServiceRowView;
        if (root.focus || row.menu) {
            root.positionViewAtIndex(root.currentIndex, ListView.Contain);
        } else {
            const y = root.contentY;
            root.currentIndex = there;
            root.contentY = y; // a new current row is scrolled to
        }
    }

    // Once the view has placed the rows.
    Timer {
        id: settle

        interval: 0
        onTriggered: root.settleCurrent()
    }

    spacing: 8
    cacheBuffer: 72 // about one row beyond each end; the default of about five takes a megabyte more
    bottomMargin: 12
    boundsBehavior: root.contentHeight > root.height ? Flickable.DragAndOvershootBounds : Flickable.StopAtBounds
    Accessible.role: Accessible.List
    Accessible.name: "Services"
    onCountChanged: settle.restart()
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home || event.key === Qt.Key_End)
            root.makeCurrent(event.key === Qt.Key_Home ? 0 : root.count - 1);
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
    // Also completes the fade of a row that is moved while it is being added.
    move: Transition {
        EaseOut {
            property: "y"
            duration: 180
        }
        EaseOut {
            property: "opacity"
            to: 1
            duration: 180
        }
    }
    displaced: root.move
}
