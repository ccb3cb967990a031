import QtQuick
import Portolan

// The right end of a row: its status, or its buttons while the row is pointed at.
FocusScope {
    id: root

    required property health health
    required property bool copied
    required property bool showsActions

    property bool keepsActions: false // unseen, for the keyboard to reach
    readonly property RowActions actions: loader.item as RowActions

    signal open
    signal copy
    signal stop
    signal menu(button: Item)

    StatusIndicator {
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

        function onMenu(button: Item) {
            root.menu(button);
        }
    }
}
