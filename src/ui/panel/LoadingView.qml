// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// Shown while a scan runs and no service is known.
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
