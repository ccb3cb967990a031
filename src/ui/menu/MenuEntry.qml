// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// An entry of a menu. The entry with the focus is the current one.
Item {
    id: root

    required property string text

    property bool isCheckable: false
    property bool isIndented: root.isCheckable // for all entries of a menu with checkable ones
    property bool isChecked: false
    property bool isDestructive: false

    signal triggered

    implicitWidth: label.x + label.implicitWidth + 28
    implicitHeight: 26
    activeFocusOnTab: true
    Accessible.role: Accessible.MenuItem
    Accessible.name: root.text
    Accessible.checkable: root.isCheckable
    Accessible.checked: root.isChecked
    Accessible.focusable: true
    Accessible.onPressAction: {
        root.forceActiveFocus();
        root.triggered();
    }

    Symbol {
        x: 7
        anchors.verticalCenter: parent.verticalCenter
        visible: root.isChecked
        name: "checkmark"
        size: 10
        weight: Font.DemiBold
        color: Theme.textStrong
    }

    ScaledText {
        id: label

        x: root.isIndented ? 27 : 10
        anchors.verticalCenter: parent.verticalCenter
        text: root.text
        font: Fonts.system(12.5)
        color: root.isDestructive ? Theme.offline : Theme.textStrong
    }
}
