import QtQuick

// The one curve by which things move and fade here.
NumberAnimation {
    easing.type: Easing.BezierSpline
    easing.bezierCurve: [0, 0, 0.58, 1, 1, 1]
}
