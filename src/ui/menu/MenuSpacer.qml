import QtQuick

// Ends a group of entries without a line.
Item {
    implicitWidth: 20
    implicitHeight: 6
}
