// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The background and border of a row.
RoundedRect {
    id: root

    required property bool isActive

    radius: 10
    color: root.isActive ? Theme.cardHover : Theme.card
    borderColor: root.isActive ? Theme.borderStrong : Theme.border

    Behavior on color {
        EaseOut {
            duration: 130
        }
    }
    Behavior on borderColor {
        EaseOut {
            duration: 130
        }
    }
}
