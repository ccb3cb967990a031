// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// Shown during the first scan.
Item {
    id: root

    implicitHeight: content.height + 88

    Column {
        id: content

        anchors.centerIn: parent
        spacing: 10

        Spinner {
            anchors.horizontalCenter: parent.horizontalCenter
        }

        PlainLabel {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Scanning ports…"
            font: Fonts.system(12)
            color: Theme.textMuted
        }
    }
}
