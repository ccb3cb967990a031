// SPDX-License-Identifier: MIT
import QtQuick

// A side or a corner of the window by which it is resized: one or two of Qt.Edges.
MouseArea {
    id: root

    required property int modelData

    readonly property bool isVertical: (root.modelData & (Qt.TopEdge | Qt.BottomEdge)) !== 0
    readonly property bool isHorizontal: (root.modelData & (Qt.LeftEdge | Qt.RightEdge)) !== 0
    readonly property bool isRight: (root.modelData & Qt.RightEdge) !== 0
    readonly property bool isBottom: (root.modelData & Qt.BottomEdge) !== 0
    readonly property real thickness: root.isHorizontal && root.isVertical ? 8 : 4

    x: root.isRight ? root.parent.width - root.width : 0
    y: root.isBottom ? root.parent.height - root.height : 0
    width: root.isHorizontal ? root.thickness : root.parent.width
    height: root.isVertical ? root.thickness : root.parent.height
    cursorShape: !root.isVertical ? Qt.SizeHorCursor : !root.isHorizontal ? Qt.SizeVerCursor : root.isRight === root.isBottom ? Qt.SizeFDiagCursor : Qt.SizeBDiagCursor
    onPressed: root.Window.window.startSystemResize(root.modelData)
}
