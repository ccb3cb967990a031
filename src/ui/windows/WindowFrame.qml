// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The border of a window without a frame of the window manager.
Item {
    id: root

    property real radius: 0
    property bool isResizable: false

    visible: !root.isResizable || (root.Window.visibility !== Window.Maximized && root.Window.visibility !== Window.FullScreen)

    RoundedRect {
        id: top

        width: parent.width
        height: 12
        radius: root.radius
        borderColor: Theme.borderStrong
        openEdge: Qt.BottomEdge
    }

    RoundedRect {
        id: bottom

        anchors.bottom: parent.bottom
        width: parent.width
        height: 12
        radius: root.radius
        borderColor: Theme.borderStrong
        openEdge: Qt.TopEdge
    }

    Rectangle {
        anchors.top: top.bottom
        anchors.bottom: bottom.top
        width: 1
        color: Theme.borderStrong
    }

    Rectangle {
        anchors.top: top.bottom
        anchors.bottom: bottom.top
        anchors.right: parent.right
        width: 1
        color: Theme.borderStrong
    }

    // The corners come last, as they lie over the ends of the sides.
    Repeater {
        model: root.isResizable ? [Qt.TopEdge, Qt.BottomEdge, Qt.LeftEdge, Qt.RightEdge, Qt.TopEdge | Qt.LeftEdge, Qt.TopEdge | Qt.RightEdge, Qt.BottomEdge | Qt.LeftEdge, Qt.BottomEdge | Qt.RightEdge] : []

        ResizeEdge {}
    }
}
