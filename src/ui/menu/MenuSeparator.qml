// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// A line between two groups of entries.
Item {
    id: root

    implicitWidth: 20
    implicitHeight: 9
    Accessible.role: Accessible.Separator

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        x: 10
        width: root.parent.width - 20
        height: 1
        color: Theme.border
    }
}
