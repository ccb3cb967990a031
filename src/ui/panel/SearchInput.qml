// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The text input of the search field, with its placeholder.
TextInput {
    id: root

    readonly property string placeholder: "Search by name, port, or path"

    clip: true
    font: Fonts.system(13)
    color: Theme.textStrong
    selectionColor: Qt.alpha(Theme.accent, 0.5)
    selectedTextColor: Theme.textStrong
    selectByMouse: true
    activeFocusOnTab: true
    Accessible.role: Accessible.EditableText
    Accessible.name: root.placeholder
    // TextInput would handle Control-K as "delete to the end of the line".
    Keys.onPressed: event => event.accepted = event.key === Qt.Key_K && (event.modifiers & (Qt.ControlModifier | Qt.MetaModifier)) !== 0

    Text {
        anchors.fill: parent
        visible: root.text === "" && root.preeditText === ""
        text: root.placeholder
        textFormat: Text.PlainText
        font: root.font
        color: Theme.textMuted
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
    }
}
