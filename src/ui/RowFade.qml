import QtQuick
import Portolan

// The ground of a row that is pointed at, growing out of nothing from left to right.
Rectangle {
    id: root

    readonly property color ground: Qt.tint(Theme.canvas, Theme.cardHover)

    gradient: Gradient {
        orientation: Gradient.Horizontal

        GradientStop {
            position: 0
            color: Qt.alpha(root.ground, 0)
        }
        GradientStop {
            position: 0.18
            color: root.ground
        }
    }
}
