// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The buttons of a row, shown instead of its status.
Row {
    id: root

    property bool copied: false
    property bool isShown: true

    signal open
    signal copy
    signal stop
    signal menu(button: PlainButton)

    spacing: 4

    RowIconButton {
        symbol: "arrow.up.right"
        help: "Open"
        Accessible.ignored: !root.isShown
        onClicked: root.open()
    }

    RowIconButton {
        id: copyButton

        symbol: root.copied ? "checkmark" : "doc.on.doc"
        help: "Copy URL"
        tint: root.copied ? Theme.online : copyButton.hovering ? Theme.textStrong : Theme.textMuted
        Accessible.ignored: !root.isShown
        onClicked: root.copy()
    }

    RowIconButton {
        symbol: "stop.fill"
        help: "Stop"
        tint: Theme.offline
        Accessible.ignored: !root.isShown
        onClicked: root.stop()
    }

    RowMenuButton {
        id: more

        Accessible.ignored: !root.isShown
        onClicked: root.menu(more)
    }
}
