// SPDX-License-Identifier: MIT
import QtQuick

// An edge or a corner of the window by which it is resized. Each direction is -1, 0 or 1.
MouseArea {
    id: root

    required property int horizontal
    required property int vertical

    readonly property bool isCorner: root.horizontal !== 0 && root.vertical !== 0
    readonly property real thickness: root.isCorner ? 8 : 4
    readonly property int edges: [Qt.LeftEdge, 0, Qt.RightEdge][root.horizontal + 1] | [Qt.TopEdge, 0, Qt.BottomEdge][root.vertical + 1]

    x: root.horizontal > 0 ? root.parent.width - root.width : 0
    y: root.vertical > 0 ? root.parent.height - root.height : 0
    width: root.horizontal === 0 ? root.parent.width : root.thickness
    height: root.vertical === 0 ? root.parent.height : root.thickness
    cursorShape: root.isCorner ? (root.horizontal === root.vertical ? Qt.SizeFDiagCursor : Qt.SizeBDiagCursor) : root.vertical === 0 ? Qt.SizeHorCursor : Qt.SizeVerCursor
    onPressed: root.Window.window.startSystemResize(root.edges)
}
