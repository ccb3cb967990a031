// SPDX-License-Identifier: MIT
import QtQuick

// A plain text that assistive technology reads.
Text {
    id: root

    textFormat: Text.PlainText
    Accessible.role: Accessible.StaticText
    Accessible.name: root.text
}
