import Portolan

// A state as a spot of colour.
RoundedRect {
    implicitWidth: 6
    implicitHeight: 6
    radius: 3
}
