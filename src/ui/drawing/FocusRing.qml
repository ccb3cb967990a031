// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// A border around its parent while that has the keyboard focus.
RoundedRect {
    id: root

    anchors.fill: parent
    visible: root.parent.activeFocus
    borderColor: Qt.alpha(Theme.accent, 0.7)
}
