import QtQuick
import Portolan

// The buttons that take the place of a row's status.
Row {
    id: root

    property bool copied: false

    signal open
    signal copy
    signal stop
    signal menu(button: Item)

    spacing: 4

    RowIconButton {
        symbol: "arrow.up.right"
        help: "Open"
        onClicked: root.open()
    }

    RowIconButton {
        symbol: root.copied ? "checkmark" : "doc.on.doc"
        help: "Copy URL"
        tint: root.copied ? Theme.online : "transparent"
        onClicked: root.copy()
    }

    RowIconButton {
        symbol: "stop.fill"
        help: "Stop"
        tint: Theme.offline
        onClicked: root.stop()
    }

    RowMenuButton {
        id: more

        onClicked: root.menu(more)
    }
}
