import QtQuick
import Portolan

// Shows `text` beside its parent once the pointer has rested there for a while.
Item {
    id: root

    required property string text
    required property bool resting

    property int delay: 600
    readonly property bool isShown: bubble.active

    onRestingChanged: bubble.active = false
    onTextChanged: bubble.active = false

    Timer {
        interval: root.delay
        running: root.resting && root.text !== ""
        onTriggered: bubble.active = true
    }

    Loader {
        id: bubble

        parent: root.Window.contentItem
        z: 200
        active: false
        sourceComponent: HintBubble {
            parent: root.Window.contentItem
            target: root.parent
            text: root.text
        }
    }
}
