// SPDX-License-Identifier: MIT
import Portolan

// The brand figure on a light tile.
RoundedRect {
    implicitWidth: 24
    implicitHeight: 24
    radius: 7
    color: Theme.textStrong

    PortolanShape {
        anchors.centerIn: parent
        width: 14
        height: 14
        color: Theme.canvas
    }
}
