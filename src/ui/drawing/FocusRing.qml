import QtQuick
import Portolan

// Shows which control the keyboard acts on.
RoundedRect {
    id: root

    property Item control: root.parent

    anchors.fill: parent
    visible: root.control.activeFocus
    borderColor: Qt.alpha(Theme.accent, 0.7)
}
