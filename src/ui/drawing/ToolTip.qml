// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// Shows `text` as tool tip of its parent after the pointer has rested there for a while.
Item {
    id: root

    required property string text
    required property bool resting

    property ToolTipPopup popup

    function hide() {
        if (!root.popup)
            return;
        root.popup.visible = false;
        root.popup.destroy();
        root.popup = null;
    }

    onRestingChanged: root.hide()
    onTextChanged: root.hide()

    Timer {
        interval: 600
        running: root.resting && root.text !== ""
        onTriggered: root.popup = popupComponent.createObject(root, {
            target: root.parent,
            text: root.text
        }) as ToolTipPopup
    }

    Component {
        id: popupComponent

        ToolTipPopup {}
    }
}
