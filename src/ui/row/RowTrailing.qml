import QtQuick
import Portolan

// The right end of a row: its status, or its buttons while the row is pointed at.
FocusScope {
    id: root

    required property health health
    required property bool copied
    required property bool showsActions

    property bool keepsActions: false // unseen, for the keyboard to reach
    // At rest the status needs only part of the column, and the lines to its left may use the rest: in the popover they
    // would lose the pid and the memory otherwise. Under the buttons, what reaches into the column fades out.
    readonly property real restingWidth: Math.min(root.width, Math.max(76, status.width))
    readonly property RowActions actions: loader.item as RowActions

    signal open
    signal copy
    signal stop
    signal menu(button: PlainButton)

    StatusIndicator {
        id: status

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        health: root.health
        opacity: root.showsActions ? 0 : 1

        Behavior on opacity {
            EaseOut {
                duration: 130
            }
        }
    }

    RowFade {
        anchors.fill: parent
        anchors.leftMargin: -20
        anchors.topMargin: 1
        anchors.bottomMargin: 1
        opacity: loader.opacity
        visible: opacity > 0
    }

    Loader {
        id: loader

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        active: root.showsActions || root.keepsActions || loader.opacity > 0
        opacity: root.showsActions ? 1 : 0
        sourceComponent: Component {
            RowActions {}
        }

        Behavior on opacity {
            EaseOut {
                duration: 130
            }
        }
    }

    Binding {
        target: root.actions
        property: "copied"
        value: root.copied
        when: root.actions !== null
    }

    Binding {
        target: root.actions
        property: "isShown"
        value: root.showsActions
        when: root.actions !== null
    }

    Connections {
        target: root.actions

        function onOpen() {
            root.open();
        }

        function onCopy() {
            root.copy();
        }

        function onStop() {
            root.stop();
        }

        function onMenu(button: PlainButton) {
            root.menu(button);
        }
    }
}
