import QtQuick
import Portolan

// Where a service's files are.
Row {
    id: root

    required property string folder
    required property real room

    spacing: 4

    Symbol {
        id: icon

        anchors.verticalCenter: parent.verticalCenter
        name: "folder"
        size: 9
        color: Theme.textFaint
    }

    ExactText {
        id: path

        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(0, Math.min(path.implicitWidth, root.room - icon.width - root.spacing))
        text: DisplayText.path(root.folder)
        horizontalAlignment: Text.AlignLeft
        maximumLineCount: 1
        font: Fonts.system(10.5)
        color: Theme.textFaint
        elide: Text.ElideMiddle
    }
}
