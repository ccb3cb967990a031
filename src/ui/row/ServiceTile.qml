// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The symbol of a service's framework.
RoundedRect {
    id: root

    required property framework framework

    implicitWidth: 38
    implicitHeight: 38
    radius: 9
    color: Theme.card
    borderColor: Theme.border

    Symbol {
        anchors.centerIn: parent
        name: root.framework.symbol
        size: 15
        weight: Font.DemiBold
        color: ServicePresentation.accent(root.framework)
    }
}
