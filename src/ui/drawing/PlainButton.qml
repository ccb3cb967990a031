// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The base of all buttons: hover, focus, tool tip, and clicks by pointer, keyboard or assistive technology.
Item {
    id: root

    required property string label

    property string toolTip: root.label
    property real radius: 7
    property color background: root.hovering ? Theme.cardHover : "transparent"
    property bool takesPointer: true
    property bool isByPointer: false // valid while `clicked` is emitted
    readonly property bool hovering: hover.hovered

    signal clicked

    // A key that repeats counts as one click.
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
    Accessible.name: root.label
    Accessible.onPressAction: root.clicked()
    Keys.onSpacePressed: event => root.press(event)
    Keys.onReturnPressed: event => root.press(event)
    Keys.onEnterPressed: event => root.press(event)

    RoundedRect {
        anchors.fill: parent
        radius: root.radius
        color: root.background
        visible: root.background.a > 0
    }

    HoverHandler {
        id: hover
    }

    MouseArea {
        id: pointer

        anchors.fill: parent
        enabled: root.takesPointer
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
