// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The title bar of the desktop window, with the window buttons in the desktop's order.
Rectangle {
    id: root

    required property RootView view

    implicitHeight: 28
    color: Theme.elevated

    MouseArea {
        id: pointer

        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        drag.target: Item {} // is not moved itself
        drag.onActiveChanged: {
            if (pointer.drag.active)
                root.Window.window.startSystemMove();
        }
        onPressed: mouse => {
            if (mouse.button === Qt.RightButton)
                root.view.windowMenuRequested();
        }
        onDoubleClicked: mouse => {
            if (mouse.button !== Qt.LeftButton)
                return;
            if (root.Window.visibility === Window.Maximized)
                root.Window.window.showNormal();
            else
                root.Window.window.showMaximized();
        }
    }

    Row {
        x: 8
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Repeater {
            model: root.view.leftButtons

            TitleButton {}
        }
    }

    Row {
        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Repeater {
            model: root.view.rightButtons

            TitleButton {}
        }
    }
}
