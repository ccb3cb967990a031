// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// A window button of the title bar: "minimize", "maximize" or "close".
HeaderIconButton {
    id: root

    required property string modelData

    readonly property bool isClose: root.modelData === "close"
    readonly property bool isMinimize: root.modelData === "minimize"
    readonly property bool isMaximized: root.Window.visibility === Window.Maximized

    implicitHeight: 24
    symbol: root.isClose ? "xmark" : root.isMinimize ? "minus" : root.isMaximized ? "square.on.square" : "square"
    label: root.isClose ? "Close" : root.isMinimize ? "Minimize" : root.isMaximized ? "Restore" : "Maximize"
    activeFocusOnTab: false
    onClicked: {
        if (root.isClose)
            root.Window.window.close();
        else if (root.isMinimize)
            root.Window.window.showMinimized();
        else if (root.isMaximized)
            root.Window.window.showNormal();
        else
            root.Window.window.showMaximized();
    }
}
