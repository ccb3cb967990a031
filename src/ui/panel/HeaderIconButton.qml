// SPDX-License-Identifier: MIT
import Portolan

// A button of the header.
IconButton {
    id: root

    required property string label

    implicitWidth: 28
    implicitHeight: 28
    name: root.label
    toolTip: root.label
}
