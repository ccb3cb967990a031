// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// Opens the menu of a row.
IconButton {
    implicitWidth: 26
    implicitHeight: 26
    symbol: "ellipsis"
    symbolSize: 12
    tint: Theme.textMuted
    background: Qt.rgba(1, 1, 1, 0.04)
    name: "More"
    Accessible.role: Accessible.ButtonMenu
}
