// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// Opens the settings menu.
HeaderIconButton {
    id: root

    required property ServiceStore store
    required property LoginItem loginItem

    property SettingsMenu menu

    symbol: "slider.horizontal.3"
    tint: Theme.textMuted
    background: "transparent"
    label: "Settings"
    toolTip: root.menu ? "" : root.label
    Accessible.role: Accessible.ButtonMenu
    onClicked: root.menu = menuComponent.createObject(root, {
        owner: root,
        anchor: Qt.rect(0, 0, root.width, root.height),
        isByPointer: root.isByPointer,
        store: root.store,
        loginItem: root.loginItem
    }) as SettingsMenu

    Component {
        id: menuComponent

        SettingsMenu {}
    }

    Connections {
        target: root.menu

        function onClosed() {
            root.menu.destroy();
            root.menu = null;
        }
    }
}
