import QtQuick

// A text that is read out as it stands.
Text {
    id: root

    textFormat: Text.PlainText
    Accessible.role: Accessible.StaticText
    Accessible.name: root.text
}
