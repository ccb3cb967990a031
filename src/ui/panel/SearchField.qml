// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The search field with its icon, shortcut hint and clear button.
FocusScope {
    id: root

    property alias text: input.text
    readonly property alias focused: input.activeFocus

    function takeFocus() {
        input.forceActiveFocus(Qt.ShortcutFocusReason);
    }

    implicitHeight: 54

    Shortcut {
        sequences: ["Ctrl+K", "Meta+K", "Ctrl+Meta+K", "Ctrl+Shift+K", "Meta+Shift+K", "Ctrl+Meta+Shift+K", "Ctrl+Alt+K", "Meta+Alt+K", "Ctrl+Meta+Alt+K", "Ctrl+Alt+Shift+K", "Meta+Alt+Shift+K", "Ctrl+Meta+Alt+Shift+K"]
        onActivated: root.takeFocus()
    }

    RoundedRect {
        id: field

        anchors.fill: parent
        anchors.leftMargin: 14
        anchors.rightMargin: 14
        anchors.topMargin: 10
        anchors.bottomMargin: 10
        radius: 9
        color: Theme.card
        borderColor: root.focused ? Qt.alpha(Theme.accent, 0.7) : Theme.border

        Behavior on borderColor {
            EaseOut {
                duration: 120
            }
        }

        MouseArea {
            anchors.fill: parent
            cursorShape: Qt.IBeamCursor
            onPressed: root.takeFocus()
        }

        Symbol {
            id: icon

            x: 11
            anchors.verticalCenter: parent.verticalCenter
            name: "magnifyingglass"
            size: 12
            weight: Font.Medium
            color: root.focused ? Theme.text : Theme.textMuted

            Behavior on color {
                EaseOut {
                    duration: 120
                }
            }
        }

        SearchInput {
            id: input

            anchors.left: icon.right
            anchors.leftMargin: 8
            anchors.right: input.text === "" ? hint.left : clear.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            focus: true
        }

        KeyHint {
            id: hint

            anchors.right: parent.right
            anchors.rightMargin: 11
            anchors.verticalCenter: parent.verticalCenter
            visible: input.text === ""
            text: "⌘K"
        }

        IconButton {
            id: clear

            implicitWidth: 16
            implicitHeight: 16
            radius: 8
            anchors.right: parent.right
            anchors.rightMargin: 11
            anchors.verticalCenter: parent.verticalCenter
            visible: input.text !== ""
            symbol: "xmark.circle.fill"
            symbolSize: 12
            weight: Font.Normal
            tint: Theme.textFaint
            background: "transparent"
            label: "Clear"
            toolTip: ""
            onClicked: {
                if (clear.activeFocus)
                    root.takeFocus();
                input.clear();
            }
        }
    }
}
