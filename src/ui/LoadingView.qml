import QtQuick
import Portolan

// The first scan.
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

        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Scanning ports…"
            textFormat: Text.PlainText
            font: Fonts.system(12)
            color: Theme.textMuted
        }
    }
}
