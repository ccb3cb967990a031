import QtQuick
import Portolan

// One line of a menu that does something. The one that has the focus is the current one of its menu.
Item {
    id: root

    required property string text

    property bool isCheckable: false
    property bool isIndented: root.isCheckable // as all are in a menu where one is checkable
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
