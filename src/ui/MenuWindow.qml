import QtQuick
import Portolan

// A menu in a window of its own, so that it may reach beyond the panel. It never takes the focus from the window it was
// opened from (the popover would close): that window's keys reach it through the backdrop.
Window {
    id: root

    required property Item owner
    required property rect anchor

    default property alias entries: column.data
    property MenuEntry current
    readonly property point place: Placement.menuOnScreen(root.owner, root.anchor, Qt.size(root.width, root.height))

    signal closed

    function move(forward: bool) {
        root.current = (root.current ?? column).nextItemInFocusChain(forward) as MenuEntry;
    }

    function accept() {
        const entry = root.current;
        root.hide();
        entry?.triggered();
    }

    flags: Qt.ToolTip | Qt.FramelessWindowHint | Qt.WindowDoesNotAcceptFocus | Qt.NoDropShadowWindowHint
    transientParent: root.owner.Window.window
    visible: true
    color: "transparent"
    x: root.place.x
    y: root.place.y
    width: column.width + 10
    height: column.height + 10
    onVisibleChanged: {
        if (!root.visible)
            Qt.callLater(root.closed);
    }

    Connections {
        target: root.transientParent

        function onActiveChanged() {
            if (!root.transientParent.active)
                root.hide();
        }

        function onVisibleChanged() {
            root.hide();
        }
    }

    MenuBackdrop {
        parent: root.owner.Window.contentItem
        onDismissed: root.hide()
        onMoved: forward => root.move(forward)
        onJumped: toFirst => {
            root.current = null;
            root.move(toFirst);
        }
        onAccepted: root.accept()
    }

    RoundedRect {
        anchors.fill: parent
        radius: 9
        color: Qt.tint(Theme.canvas, Theme.cardHover)
        borderColor: Theme.borderStrong
        Accessible.role: Accessible.PopupMenu
    }

    RoundedRect {
        visible: root.current !== null
        x: column.x
        y: column.y + (root.current?.y ?? 0)
        width: column.width
        height: root.current?.height ?? 0
        radius: 5
        color: Theme.border
    }

    Column {
        id: column

        x: 5
        y: 5
        width: Math.max(170, column.implicitWidth)
    }

    MouseArea {
        anchors.fill: column
        hoverEnabled: true
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onPositionChanged: mouse => root.current = column.childAt(1, mouse.y) as MenuEntry
        onExited: root.current = null
        // A finger comes without a move before.
        onPressed: mouse => root.current = column.childAt(1, mouse.y) as MenuEntry
        onClicked: root.accept()
    }
}
