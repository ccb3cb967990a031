// SPDX-License-Identifier: MIT
import QtQuick

// Space between two groups of entries.
Item {
    implicitWidth: 20
    implicitHeight: 6
}
