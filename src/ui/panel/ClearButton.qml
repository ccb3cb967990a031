import Portolan

// Clears the search text.
PlainButton {
    id: root

    implicitWidth: icon.width
    implicitHeight: icon.height
    radius: root.width / 2
    name: "Clear"

    Symbol {
        id: icon

        anchors.centerIn: parent
        name: "xmark.circle.fill"
        size: 12
        color: Theme.textFaint
    }
}
