// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// A border around the control that has the keyboard focus.
RoundedRect {
    id: root

    property Item control: root.parent

    anchors.fill: parent
    visible: root.control.activeFocus
    borderColor: Qt.alpha(Theme.accent, 0.7)
}
