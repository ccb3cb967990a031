// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The right end of a row: the status, or the buttons while the row is active.
FocusScope {
    id: root

    required property health health
    required property bool copied
    required property bool showsActions

    property bool keepsActions: false // creates the buttons even while they are invisible, so that Tab reaches them
    // The status needs only part of the column, and the lines to its left use the rest; otherwise the popover would have
    // no space for the process id and the memory. RowFade covers that part under the buttons.
    readonly property real restingWidth: Math.min(root.width, Math.max(76, status.width))
    readonly property RowActions actions: loader.item as RowActions

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
        onLoaded: {
            root.actions.copied = Qt.binding(() => root.copied);
            root.actions.isShown = Qt.binding(() => root.showsActions);
        }

        Behavior on opacity {
            EaseOut {
                duration: 130
            }
        }
    }
    // Until they can be seen, the buttons take no press, and the card below does not either: a pointer may have jumped here.
    MouseArea {
        anchors.fill: loader
        enabled: root.showsActions && loader.opacity < 0.5
    }
}
