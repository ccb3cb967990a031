import QtQuick
import Portolan

// The right end of a row: its status, or its buttons while the row is pointed at.
Item {
    id: root

    required property health health
    required property bool copied
    required property bool showsActions

    // At rest the status needs only part of the column, and the lines to its left may use the rest: in the popover
    // they would be cut to half otherwise. The buttons need the whole column and cover what reaches into it.
    readonly property real restingWidth: Math.max(76, status.width)

    signal open
    signal copy
    signal stop
    signal menu(button: Item)

    StatusIndicator {
        id: status

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        health: root.health
        opacity: root.showsActions ? 0 : 1

        Behavior on opacity {
            EaseOut {
                duration: 130
            }
        }
    }

    Loader {
        id: actions

        anchors.fill: parent
        active: root.showsActions || opacity > 0
        opacity: root.showsActions ? 1 : 0
        sourceComponent: Item {
            Rectangle {
                id: cover

                readonly property color ground: Qt.tint(Theme.canvas, Theme.cardHover)

                anchors.fill: parent
                anchors.leftMargin: -20
                anchors.topMargin: 1
                anchors.bottomMargin: 1
                gradient: Gradient {
                    orientation: Gradient.Horizontal

                    GradientStop {
                        position: 0
                        color: Qt.alpha(cover.ground, 0)
                    }
                    GradientStop {
                        position: 0.18
                        color: cover.ground
                    }
                }
            }

            RowActions {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                copied: root.copied
                onOpen: root.open()
                onCopy: root.copy()
                onStop: root.stop()
                onMenu: button => root.menu(button)
            }
        }

        Behavior on opacity {
            EaseOut {
                duration: 130
            }
        }
    }
}
