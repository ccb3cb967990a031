import QtQuick
import Portolan

// What every button is made of: it can be hovered, and pressed with the pointer, the keyboard or by assistive means.
Item {
    id: root

    required property string name

    property string toolTip
    property real radius: 7
    property bool isByPointer: false // while it is clicked: what with
    readonly property bool hovering: hover.hovered

    signal clicked

    // A key that is held presses once.
    function press(event: KeyEvent) {
        if (!event.isAutoRepeat)
            root.clicked();
    }

    function click() {
        root.isByPointer = true;
        root.clicked();
        root.isByPointer = false;
    }

    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: root.name
    Accessible.onPressAction: root.clicked()
    Keys.onSpacePressed: event => root.press(event)
    Keys.onReturnPressed: event => root.press(event)
    Keys.onEnterPressed: event => root.press(event)

    HoverHandler {
        id: hover
    }

    MouseArea {
        id: pointer

        anchors.fill: parent
        onClicked: root.click()
    }

    FocusRing {
        radius: root.radius
        z: 1
    }

    ToolTip {
        text: root.toolTip
        resting: hover.hovered && !pointer.pressed
    }
}
