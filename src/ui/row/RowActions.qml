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
        takesPointer: root.isShown
        Accessible.ignored: !root.isShown
        onClicked: root.open()
    }

    RowIconButton {
        id: copyButton

        symbol: root.copied ? "checkmark" : "doc.on.doc"
        help: "Copy URL"
        tint: root.copied ? Theme.online : copyButton.hovering ? Theme.textStrong : Theme.textMuted
        takesPointer: root.isShown
        Accessible.ignored: !root.isShown
        onClicked: root.copy()
    }

    RowIconButton {
        symbol: "stop.fill"
        help: "Stop"
        tint: Theme.offline
        takesPointer: root.isShown
        Accessible.ignored: !root.isShown
        onClicked: root.stop()
    }

    RowIconButton {
        id: more

        symbol: "ellipsis"
        symbolSize: 12
        label: "More"
        tint: Theme.textMuted
        background: Qt.rgba(1, 1, 1, 0.04)
        Accessible.role: Accessible.ButtonMenu
        takesPointer: root.isShown
        Accessible.ignored: !root.isShown
        onClicked: root.menu(more)
    }
}
