// SPDX-License-Identifier: MIT
import QtQuick

// The easing curve of all animations, of numbers and of colours.
PropertyAnimation {
    easing.type: Easing.BezierSpline
    easing.bezierCurve: [0, 0, 0.58, 1, 1, 1]
}
