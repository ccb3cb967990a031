import QtQuick
import Portolan

// The background of a row that is pointed at, growing out of nothing from left to right.
Rectangle {
    id: root

    // Seen through in as many steps as the row's own background is painted with, or the two differ by a shade.
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
