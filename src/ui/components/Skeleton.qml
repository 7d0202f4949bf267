import Sorrelin
import QtQuick

// A stand-in for a row or figure not measured yet, with a shine that sweeps across it.
Rectangle {
    id: root
    implicitWidth: 120
    implicitHeight: 12
    radius: 6
    color: Palette.sunken
    Accessible.role: Accessible.StaticText
    Accessible.name: "Measuring"

    Shine {
        anchors.fill: parent
        radius: root.radius
        band: 0.35
        strength: 0.05
        looping: true
    }
}
