import Sorrelin
import QtQuick

// A ring of parts, clockwise from the top: the disk ring. `segments` is a list of
// {id, value, color, hatched, striped} where `color` is a colour or a palette name; `total`
// (optional) is what the whole ring stands for. Children are centred inside it. The ring
// sweeps in as it appears.
Item {
    id: root
    property var segments: []
    property real total: 0
    property real lineWidth: 12
    property real gap: 2
    property color track: Palette.track
    property real size: 140
    default property alias content: middle.data
    // The id of the part under the pointer, empty elsewhere: for the tip of a part.
    readonly property string hoveredSegment: hover.hovered ? ring.segmentAt(hover.point.position.x, hover.point.position.y) : ""

    implicitWidth: size
    implicitHeight: size

    RingView {
        id: ring
        anchors.fill: parent
        segments: root.segments
        total: root.total
        lineWidth: root.lineWidth
        gap: root.gap
        track: root.track
        reveal: Motion.animate ? 0 : 1
        Component.onCompleted: if (Motion.animate) entrance.start()
        NumberAnimation on reveal {
            id: entrance
            running: false
            from: 0
            to: 1
            duration: Motion.ms(0.7)
            easing.type: Easing.OutCubic
        }
    }
    Item {
        id: middle
        anchors.centerIn: parent
        width: root.width - 2 * root.lineWidth - 8
        height: root.height - 2 * root.lineWidth - 8
    }
    HoverHandler { id: hover }
}
