// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// A gradient from transparent to the background of an active row, over which the buttons are drawn.
Rectangle {
    id: root

    // The alpha is rounded down to 8 bits as in the image of RowBackground, so that both blend to the same colour.
    readonly property color background: Qt.tint(Theme.canvas, Qt.alpha(Theme.cardHover, Math.floor(Theme.cardHover.a * 255) / 255))

    gradient: Gradient {
        orientation: Gradient.Horizontal

        GradientStop {
            position: 0
            color: Qt.alpha(root.background, 0)
        }
        GradientStop {
            position: 0.18
            color: root.background
        }
    }
}
