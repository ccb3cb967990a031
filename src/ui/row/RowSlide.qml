import QtQuick
import Portolan

// Takes a row to its new place. A row that was still fading in when it had to move ends its fade here.
Transition {
    EaseOut {
        property: "y"
        duration: 180
    }
    EaseOut {
        property: "opacity"
        to: 1
        duration: 180
    }
}
