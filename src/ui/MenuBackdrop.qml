import QtQuick
import Portolan

// Lies over the window that a menu was opened from: keeps the keyboard and the pointer for the menu until it closes.
MouseArea {
    id: root

    property Item previousFocus

    signal dismissed
    signal moved(forward: bool)
    signal jumped(toFirst: bool)
    signal accepted

    anchors.fill: parent
    z: 100
    acceptedButtons: Qt.AllButtons
    hoverEnabled: true
    onPressed: root.dismissed()
    onWheel: root.dismissed()
    Keys.onUpPressed: root.moved(false)
    Keys.onDownPressed: root.moved(true)
    Keys.onBacktabPressed: root.moved(false)
    Keys.onTabPressed: root.moved(true)
    Keys.onReturnPressed: root.accepted()
    Keys.onEnterPressed: root.accepted()
    Keys.onSpacePressed: root.accepted()
    Keys.onEscapePressed: root.dismissed()
    Keys.onMenuPressed: root.dismissed()
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home || event.key === Qt.Key_End)
            root.jumped(event.key === Qt.Key_Home);
    }
    Component.onCompleted: {
        root.previousFocus = root.Window.activeFocusItem;
        root.forceActiveFocus();
    }
    Component.onDestruction: root.previousFocus?.forceActiveFocus(Qt.PopupFocusReason)
}
