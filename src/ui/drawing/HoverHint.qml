import QtQuick
import Portolan

// Shows `text` beside its parent once the pointer has rested there for a while.
Item {
    id: root

    required property string text
    required property bool resting

    property HintBubble bubble
    readonly property bool isShown: root.bubble !== null

    function hide() {
        if (!root.bubble)
            return;
        root.bubble.visible = false;
        root.bubble.destroy();
        root.bubble = null;
    }

    onRestingChanged: root.hide()
    onTextChanged: root.hide()

    Timer {
        interval: 600
        running: root.resting && root.text !== ""
        onTriggered: root.bubble = bubbleComponent.createObject(root, {
            target: root.parent,
            text: root.text
        }) as HintBubble
    }

    Component {
        id: bubbleComponent

        HintBubble {}
    }
}
