// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The row of one service.
Item {
    id: root

    required property service service
    required property bool isPinned
    required property ServiceActions actions

    property real trailingWidth: 128
    property bool isCurrent: true // only the current row of a list is in the Tab order
    property ServiceMenu menu
    readonly property bool hovering: hover.hovered
    readonly property bool copied: copyFeedback.running
    readonly property bool isActive: root.hovering || root.activeFocus || trailing.activeFocus || root.menu !== null

    signal togglePin

    function openMenu(anchor: rect, isByPointer: bool) {
        root.menu = menuComponent.createObject(root, {
            owner: root,
            anchor: anchor,
            isByPointer: isByPointer,
            service: root.service,
            isPinned: root.isPinned,
            actions: root.actions
        }) as ServiceMenu;
    }

    // A key that repeats opens one page only.
    function openByKey(event: KeyEvent) {
        if (!event.isAutoRepeat)
            root.actions.openInBrowser(root.service);
    }

    function openMenuAtTile() {
        root.openMenu(Qt.rect(tile.x, tile.y, tile.width, tile.height), false);
    }

    implicitHeight: Math.max(tile.height, details.height) + 20
    activeFocusOnTab: root.isCurrent || root.activeFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: ServicePresentation.accessibleName(root.service, root.isPinned)
    Accessible.focusable: true
    Accessible.onPressAction: root.actions.openInBrowser(root.service)
    Keys.onReturnPressed: event => root.openByKey(event)
    Keys.onEnterPressed: event => root.openByKey(event)
    Keys.onPressed: event => {
        const asksForMenu = event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier);
        if (asksForMenu && !event.isAutoRepeat)
            root.openMenuAtTile();
    }
    onEnabledChanged: {
        if (root.menu)
            root.menu.close();
    }

    // Starting it while it runs does not extend it.
    Timer {
        id: copyFeedback

        interval: 1100
    }

    HoverHandler {
        id: hover
    }

    RowBackground {
        anchors.fill: parent
        isActive: root.isActive
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        onPressed: mouse => {
            if (mouse.button === Qt.RightButton)
                root.openMenu(Qt.rect(mouse.x, mouse.y, 0, 0), true);
        }
        onClicked: mouse => {
            if (mouse.button === Qt.LeftButton)
                root.actions.openInBrowser(root.service);
        }
    }

    ServiceTile {
        id: tile

        x: 12
        anchors.verticalCenter: parent.verticalCenter
        framework: root.service.framework
    }

    ServiceDetails {
        id: details

        anchors.left: tile.right
        anchors.leftMargin: 12
        anchors.right: trailing.right
        anchors.rightMargin: trailing.restingWidth + 6 + 12
        anchors.verticalCenter: parent.verticalCenter
        service: root.service
        isPinned: root.isPinned
    }

    RowTrailing {
        id: trailing

        anchors.right: parent.right
        anchors.rightMargin: 12
        width: root.trailingWidth
        height: parent.height
        health: root.service.health
        copied: root.copied
        showsActions: root.isActive
        keepsActions: root.isCurrent
    }

    Connections {
        target: trailing.actions

        function onOpen() {
            root.actions.openInBrowser(root.service);
        }

        function onCopy() {
            root.actions.copyURL(root.service);
            copyFeedback.start();
        }

        function onStop() {
            root.actions.stop(root.service);
        }

        function onMenu(button: PlainButton) {
            root.openMenu(button.mapToItem(root, 0, 0, button.width, button.height), button.isByPointer);
        }
    }

    FocusRing {
        radius: 10
    }

    Component {
        id: menuComponent

        ServiceMenu {}
    }

    Connections {
        target: root.menu

        function onTogglePin() {
            root.togglePin();
        }

        function onClosed() {
            root.menu.destroy();
            root.menu = null;
        }
    }
}
