import QtQuick
import Portolan

// Opens the settings menu.
PlainButton {
    id: root

    required property ServiceStore store
    required property LoginItem loginItem

    property SettingsMenu menu

    implicitWidth: 28
    implicitHeight: 28
    name: "Settings"
    toolTip: root.menu ? "" : "Settings"
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

    Symbol {
        anchors.centerIn: parent
        name: "slider.horizontal.3"
        size: 12.5
        weight: Font.DemiBold
        color: Theme.textMuted
    }
}
