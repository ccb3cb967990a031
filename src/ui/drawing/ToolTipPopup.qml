// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The tool tip of `target`, shown above everything else in its window.
RoundedRect {
    id: root

    required property Item target
    required property string text

    readonly property rect covered: root.target.mapToItem(null, 0, 0, root.target.width, root.target.height)
    readonly property point place: OverlayPlacement.toolTip(root.covered, Qt.size(root.width, root.height), Qt.rect(0, 0, root.space.width, root.space.height))
    // Briefly without a parent while the window is destroyed.
    readonly property size space: root.parent ? Qt.size(root.parent.width, root.parent.height) : Qt.size(0, 0)

    parent: root.target.Window.contentItem
    x: Math.round(root.place.x)
    y: Math.round(root.place.y)
    z: 200
    width: label.width + 16
    height: label.height + 8
    radius: 6
    color: Qt.tint(Theme.canvas, Theme.borderStrong)
    borderColor: Theme.borderStrong
    Accessible.role: Accessible.ToolTip
    Accessible.name: root.text

    Text {
        id: label

        anchors.centerIn: parent
        width: Math.min(Math.ceil(label.implicitWidth), root.space.width - 24)
        text: root.text
        textFormat: Text.PlainText
        font: Fonts.system(11)
        color: Theme.textStrong
        elide: Text.ElideRight
    }
}
