import QtQuick
import Portolan

// One service as a card.
FocusScope {
    id: root

    required property service service
    required property bool isPinned
    required property ServiceActions actions

    property real trailingWidth: 128
    readonly property bool hovering: hover.hovered
    readonly property bool copied: copyFeedback.isRaised
    readonly property bool isActive: root.hovering || root.activeFocus || menu.active

    signal stop
    signal togglePin

    function openMenu(anchor: rect) {
        menu.anchor = anchor;
        menu.active = true;
    }

    implicitHeight: Math.max(tile.height, details.height) + 20
    Accessible.role: Accessible.ListItem
    Accessible.name: ServicePresentation.spoken(root.service, root.isPinned)
    Accessible.focusable: true
    Accessible.onPressAction: root.actions.openInBrowser(root.service)
    Keys.onReturnPressed: root.actions.openInBrowser(root.service)
    Keys.onEnterPressed: root.actions.openInBrowser(root.service)
    Keys.onMenuPressed: root.openMenu(Qt.rect(tile.x, tile.y, tile.width, tile.height))
    Keys.onPressed: event => {
        if (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier)
            root.openMenu(Qt.rect(tile.x, tile.y, tile.width, tile.height));
    }

    MomentaryFlag {
        id: copyFeedback

        duration: 1100
    }

    HoverHandler {
        id: hover
    }

    RoundedRect {
        anchors.fill: parent
        radius: 10
        color: root.isActive ? Theme.cardHover : Theme.card
        borderColor: root.isActive ? Theme.borderStrong : Theme.border

        Behavior on color {
            EaseOutColor {
                duration: 130
            }
        }
        Behavior on borderColor {
            EaseOutColor {
                duration: 130
            }
        }
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onPressed: mouse => {
            if (mouse.button === Qt.RightButton)
                root.openMenu(Qt.rect(mouse.x, mouse.y, 0, 0));
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
        anchors.rightMargin: trailing.restingWidth + 12
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
        onOpen: root.actions.openInBrowser(root.service)
        onCopy: {
            root.actions.copyURL(root.service);
            copyFeedback.raise();
        }
        onStop: root.stop()
        onMenu: button => root.openMenu(button.mapToItem(root, 0, 0, button.width, button.height))
    }

    FocusRing {
        radius: 10
    }

    ServiceMenu {
        id: menu

        service: root.service
        isPinned: root.isPinned
        actions: root.actions
        onStop: root.stop()
        onTogglePin: root.togglePin()
    }
}
