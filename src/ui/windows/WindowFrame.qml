// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The border of a window without a frame of the window manager.
Item {
    id: root

    property real radius: 0
    property bool isResizable: false

    visible: root.Window.visibility !== Window.Maximized && root.Window.visibility !== Window.FullScreen

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

    Item {
        anchors.fill: parent
        visible: root.isResizable

        ResizeEdge {
            horizontal: 0
            vertical: -1
        }
        ResizeEdge {
            horizontal: 0
            vertical: 1
        }
        ResizeEdge {
            horizontal: -1
            vertical: 0
        }
        ResizeEdge {
            horizontal: 1
            vertical: 0
        }
        ResizeEdge {
            horizontal: -1
            vertical: -1
        }
        ResizeEdge {
            horizontal: 1
            vertical: -1
        }
        ResizeEdge {
            horizontal: -1
            vertical: 1
        }
        ResizeEdge {
            horizontal: 1
            vertical: 1
        }
    }
}
