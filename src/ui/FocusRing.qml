import QtQuick
import Portolan

// Shows which control the keyboard acts on.
RoundedRect {
    id: root

    anchors.fill: parent
    visible: root.parent.activeFocus
    borderColor: Qt.alpha(Theme.accent, 0.7)
}
