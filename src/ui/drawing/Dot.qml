// SPDX-License-Identifier: MIT
import Portolan

// A small disc whose colour shows a state.
RoundedRect {
    implicitWidth: 6
    implicitHeight: 6
    radius: 3
}
