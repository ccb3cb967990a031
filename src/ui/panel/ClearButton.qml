// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// Clears the search text.
IconButton {
    implicitWidth: 16
    implicitHeight: 16
    radius: 8
    symbol: "xmark.circle.fill"
    symbolSize: 12
    weight: Font.Normal
    tint: Theme.textFaint
    background: "transparent"
    name: "Clear"
}
