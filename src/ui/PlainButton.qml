import QtQuick
import Portolan

// What every button is made of: it can be hovered, and pressed with the pointer, the keyboard or by assistive means.
Item {
    id: root

    required property string name

    property string hint
    property real radius: 7
    property bool takesPointer: true
    readonly property bool hovering: hover.hovered

    signal clicked

    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: root.name
    Accessible.onPressAction: root.clicked()
    Keys.onSpacePressed: root.clicked()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    HoverHandler {
        id: hover

        enabled: root.takesPointer
    }

    MouseArea {
        id: pointer

        anchors.fill: parent
        enabled: root.takesPointer
        onClicked: root.clicked()
    }

    FocusRing {
        radius: root.radius
        z: 1
    }

    HoverHint {
        text: root.hint
        resting: hover.hovered && !pointer.pressed
    }
}
