// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// A Text with a fractional font size. Qt rounds font sizes to whole pixels, so the text is drawn at the nearest whole
// size and scaled; the renderer scales the outlines of the glyphs, so it stays sharp.
Item {
    id: root

    property alias text: label.text
    property font font: Fonts.system(13)
    property alias color: label.color
    property alias elide: label.elide
    property alias horizontalAlignment: label.horizontalAlignment
    property alias maximumLineCount: label.maximumLineCount
    readonly property alias truncated: label.truncated
    readonly property real paintedWidth: Math.ceil(label.contentWidth * root.ratio)
    readonly property real ratio: Fonts.ratio(root.font)

    implicitWidth: Math.ceil(label.implicitWidth * root.ratio)
    implicitHeight: Math.ceil(label.implicitHeight * root.ratio)
    baselineOffset: label.baselineOffset * root.ratio

    Text {
        id: label

        width: root.width / root.ratio
        scale: root.ratio
        transformOrigin: Item.TopLeft
        textFormat: Text.PlainText
        font: Fonts.whole(root.font)
    }
}
