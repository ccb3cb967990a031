// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// A menu at `anchor`, in coordinates of its owner. It is an item above the content of the window, not a window: its
// rounded corners need no compositor, and the popover keeps the focus. Modal until it closes.
FocusScope {
    id: root

    required property Item owner
    required property rect anchor

    property bool isByPointer: false // otherwise opened by keyboard: the first entry is the current one
    default property alias entries: column.data
    property bool followsPointer: root.isByPointer // a resting pointer chooses nothing in a menu that keys opened
    property var restingPlace: null // of the pointer, on the screen: the menu may move below it
    property Item previousFocus
    readonly property MenuEntry current: root.Window.activeFocusItem as MenuEntry
    readonly property rect place: root.owner.mapToItem(root, root.anchor)

    signal closed

    function close() {
        // If the focus has moved elsewhere, it stays there.
        const hadFocus = root.activeFocus;
        root.visible = false;
        if (hadFocus && root.previousFocus)
            root.previousFocus.forceActiveFocus(Qt.PopupFocusReason);
        root.closed();
    }

    function step(forward: bool) {
        const next = root.current ? root.current.nextItemInFocusChain(forward) as MenuEntry : null;
        (next ? next : root.edge(forward)).forceActiveFocus(Qt.TabFocusReason);
    }

    function noteMove(place: point) {
        if (root.restingPlace === null)
            root.restingPlace = place;
        else if (root.restingPlace.x !== place.x || root.restingPlace.y !== place.y)
            root.followsPointer = true;
    }

    function point(y: real) {
        const entry = column.childAt(1, y - column.y) as MenuEntry;
        (entry ? entry : root).forceActiveFocus(Qt.MouseFocusReason);
    }

    function trigger() {
        if (root.current)
            root.current.triggered();
    }

    // Ignores repeats of the key that opened the menu.
    function triggerByKey(event: KeyEvent) {
        if (!event.isAutoRepeat)
            root.trigger();
    }

    function edge(first: bool): Item {
        return first ? focusBefore.nextItemInFocusChain(true) : focusAfter.nextItemInFocusChain(false);
    }

    parent: root.owner.Window.contentItem
    anchors.fill: parent
    z: 100
    Accessible.role: Accessible.PopupMenu
    Keys.onDownPressed: root.step(true)
    Keys.onUpPressed: root.step(false)
    Keys.onTabPressed: root.step(true)
    Keys.onBacktabPressed: root.step(false)
    Keys.onReturnPressed: event => root.triggerByKey(event)
    Keys.onEnterPressed: event => root.triggerByKey(event)
    Keys.onSpacePressed: event => root.triggerByKey(event)
    Keys.onEscapePressed: root.close()
    Keys.onMenuPressed: event => {
        if (!event.isAutoRepeat)
            root.close();
    }
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home || event.key === Qt.Key_End)
            root.edge(event.key === Qt.Key_Home).forceActiveFocus(Qt.TabFocusReason);
    }
    Component.onCompleted: {
        root.previousFocus = root.Window.activeFocusItem;
        (root.isByPointer ? root : root.edge(true)).forceActiveFocus(Qt.PopupFocusReason);
    }
    onActiveFocusChanged: {
        if (!root.activeFocus && root.visible)
            root.close();
    }

    Connections {
        target: root.current

        function onTriggered() {
            root.close();
        }
    }

    Connections {
        target: root.Window.window

        function onActiveChanged() {
            if (!root.Window.active)
                root.close();
        }
    }

    MouseArea {
        id: outside

        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onEntered: root.noteMove(outside.mapToGlobal(outside.mouseX, outside.mouseY))
        onPositionChanged: mouse => root.noteMove(outside.mapToGlobal(mouse.x, mouse.y))
        onPressed: root.close()
        onWheel: root.close()
    }

    RoundedRect {
        id: panel

        readonly property point corner: OverlayPlacement.menu(root.place, Qt.size(panel.width, panel.height), Qt.rect(4, 4, root.width - 8, root.height - 8))

        x: Math.round(panel.corner.x)
        y: Math.round(panel.corner.y)
        width: column.width + 10
        height: column.height + 10
        radius: 9
        color: Qt.tint(Theme.canvas, Theme.cardHover)
        borderColor: Theme.borderStrong

        RoundedRect {
            visible: root.current !== null
            x: column.x
            y: column.y + (root.current ? root.current.y : 0)
            width: column.width
            height: root.current ? root.current.height : 0
            radius: 5
            color: Theme.border
        }

        Item {
            id: focusBefore
        }

        Column {
            id: column

            x: 5
            y: 5
            width: Math.max(170, column.implicitWidth)
        }

        Item {
            id: focusAfter
        }

        MouseArea {
            id: pointer

            property bool isMeant

            anchors.fill: parent
            hoverEnabled: true
            acceptedButtons: Qt.AllButtons
            onEntered: {
                root.noteMove(pointer.mapToGlobal(pointer.mouseX, pointer.mouseY));
                if (root.followsPointer)
                    root.point(pointer.mouseY);
            }
            onPositionChanged: mouse => {
                root.noteMove(pointer.mapToGlobal(mouse.x, mouse.y));
                if (root.followsPointer)
                    root.point(mouse.y);
            }
            onPressed: mouse => {
                pointer.isMeant = !Presses.isRepeated();
                root.point(mouse.y); // touch presses without a preceding move
            }
            onClicked: {
                // The press that opened the menu may be repeated where an entry is now.
                if (pointer.isMeant)
                    root.trigger();
            }
        }
    }
}
