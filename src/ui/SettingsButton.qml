import QtQuick
import Portolan

// Opens the settings menu.
PlainButton {
    id: root

    required property ServiceStore store
    required property LoginItem loginItem

    // What the login item says, not what was asked of it: where a change fails, the check mark goes back.
    property bool launchAtLogin: root.loginItem.isEnabled()

    implicitWidth: 28
    implicitHeight: 28
    name: "Settings"
    hint: "Settings"
    Accessible.role: Accessible.ButtonMenu
    onClicked: menu.active = true

    Symbol {
        anchors.centerIn: parent
        name: "slider.horizontal.3"
        size: 12.5
        weight: Font.DemiBold
        color: Theme.textMuted
    }

    SettingsMenu {
        id: menu

        store: root.store
        launchAtLogin: root.launchAtLogin
        onLaunchAtLoginToggled: root.launchAtLogin = root.loginItem.setEnabled(!root.launchAtLogin)
    }
}
