// SPDX-License-Identifier: MIT
import Portolan

// A button of the header.
IconButton {
    implicitWidth: 28
    implicitHeight: 28
}
