import QtQuick
import Portolan

// Opens the settings menu.
PlainButton {
    id: root

    required property ServiceStore store
    required property LoginItem loginItem

    // The actual state as reported by the login item: if a change fails, the check mark does not change.
    property bool launchAtLogin: root.loginItem.isEnabled()
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
        launchAtLogin: root.launchAtLogin
    }) as SettingsMenu

    Component {
        id: menuComponent

        SettingsMenu {}
    }

    Connections {
        target: root.menu

        function onLaunchAtLoginToggled() {
            root.launchAtLogin = root.loginItem.setEnabled(!root.launchAtLogin);
        }

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
