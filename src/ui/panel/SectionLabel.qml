// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The title of the list and the number of its rows.
Item {
    id: root

    required property string text
    required property int count

    implicitHeight: name.implicitHeight + 8

    PlainLabel {
        id: name

        x: 16
        text: root.text
        font: Fonts.system(10, Font.DemiBold, 0.8)
        color: Theme.textFaint
    }

    PlainLabel {
        anchors.right: parent.right
        anchors.rightMargin: 16
        text: root.count
        font: Fonts.digits(10, Font.DemiBold)
        color: Theme.textFaint
    }
}
