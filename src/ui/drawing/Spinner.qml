// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// A progress indicator of indeterminate duration.
SpinnerWheel {
    id: root

    implicitWidth: 16
    implicitHeight: 16
    color: Theme.textMuted
    Accessible.role: Accessible.Animation
    Accessible.name: "Scanning"

    WindowExposure {
        id: exposure
    }

    Timer {
        interval: 100
        repeat: true
        running: root.visible && exposure.isExposed
        onTriggered: root.step += 1
    }
}
