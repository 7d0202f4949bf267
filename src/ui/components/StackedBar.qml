import Sorrelin
import QtQuick

// Parts side by side in one rounded bar: the storage bar, the memory bar, the tiles' bars.
// `segments` as for Ring; a part may be `hatched` or `striped` (swap). It grows in from the
// left as it appears.
Item {
    id: root
    property var segments: []
    property real total: 0
    property real lineWidth: 8 // the bar's thickness, as for a ring
    property real gap: 2
    property color track: Palette.track
    readonly property string hoveredSegment: hover.hovered ? bar.segmentAt(hover.point.position.x, hover.point.position.y) : ""

    implicitHeight: lineWidth
    implicitWidth: 200

    StackedBarView {
        id: bar
        anchors.fill: parent
        segments: root.segments
        total: root.total
        gap: root.gap
        track: root.track
        reveal: Motion.animate ? 0 : 1
        Component.onCompleted: if (Motion.animate) entrance.start()
        NumberAnimation on reveal {
            id: entrance
            running: false
            from: 0
            to: 1
            duration: Motion.ms(0.6)
            easing.type: Easing.OutCubic
        }
    }
    HoverHandler { id: hover }
}
