// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// Moves a row to its new position. Also completes the fade of a row that is moved while it is being added.
Transition {
    EaseOut {
        property: "y"
        duration: 180
    }
    EaseOut {
        property: "opacity"
        to: 1
        duration: 180
    }
}
