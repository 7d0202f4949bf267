import Sorrelin
import QtQuick

// A row's size against the biggest of its list: a thin filled bar on the track.
Rectangle {
    id: root
    property real value: 0
    property real maximum: 0
    property color tint: Palette.blue

    implicitWidth: 90
    implicitHeight: 5
    radius: height / 2
    color: Palette.track
    Accessible.ignored: true

    Rectangle {
        height: parent.height
        radius: parent.radius
        color: root.tint
        // Anything that takes space shows at least a sliver.
        width: root.maximum > 0 && root.value > 0 ? Math.max(height, parent.width * Math.min(1, root.value / root.maximum)) : 0
        Behavior on width { enabled: Motion.animate; NumberAnimation { duration: Motion.smooth.duration; easing: Motion.smooth.easing } }
    }
}
