// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// Shown instead of the list if it is empty.
Item {
    id: root

    required property bool isSearching

    implicitWidth: content.width + 36
    implicitHeight: content.height + 80

    Column {
        id: content

        anchors.centerIn: parent
        spacing: 10

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: root.isSearching ? "magnifyingglass" : "wifi.slash"
            size: 26
            color: Theme.textFaint
        }

        PlainLabel {
            anchors.horizontalCenter: parent.horizontalCenter
            text: root.isSearching ? "No matches" : "Nothing running"
            font: Fonts.system(14, Font.DemiBold)
            color: Theme.text
        }

        PlainLabel {
            id: message

            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(240, message.implicitWidth)
            text: root.isSearching ? "Try a different name or port." : "Start a dev server and it appears here automatically."
            font: Fonts.system(12)
            color: Theme.textMuted
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.WordWrap
        }
    }
}
