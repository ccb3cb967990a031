import QtQuick
import Portolan

// Something is going on, and nobody knows for how long.
Item {
    id: root

    property int step: 0

    implicitWidth: 16
    implicitHeight: 16
    Accessible.role: Accessible.Animation
    Accessible.name: "Scanning"

    WindowExposure {
        id: exposure

        window: root.Window.window
    }

    Timer {
        interval: 100
        repeat: true
        running: root.visible && exposure.isExposed
        onTriggered: root.step = (root.step + 1) % 8
    }

    Repeater {
        model: 8

        Rectangle {
            required property int index

            x: root.width / 2 - width / 2
            width: root.width / 8
            height: root.height * 0.3
            radius: width / 2
            color: Theme.textMuted
            opacity: 1 - 0.12 * ((root.step - index + 8) % 8)
            transform: Rotation {
                origin.x: root.width / 16
                origin.y: root.height / 2
                angle: 45 * index
            }
        }
    }
}
