// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// A button of a row.
IconButton {
    id: root

    property string help

    implicitWidth: 26
    implicitHeight: 26
    symbolSize: 11.5
    background: root.hovering ? Theme.cardHover : Qt.rgba(1, 1, 1, 0.04)
    label: root.help
    toolTip: root.help
}
