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

    GlidingBar {
        height: parent.height
        radius: parent.radius
        color: root.tint
        // Anything that takes space shows at least a sliver.
        goal: root.maximum > 0 && root.value > 0 ? Math.max(height, parent.width * Math.min(1, root.value / root.maximum)) : 0
    }
}
