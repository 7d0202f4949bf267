import Sorrelin
import QtQuick
import QtQuick.Shapes

// A tick that draws itself from its short stroke to its long one when `drawn` turns true.
// With reduced motion and in pictures it is simply there.
Item {
    id: root
    property bool drawn: true
    property real size: 16
    property real lineWidth: Math.max(1.6, size / 8)
    property color color: Palette.green
    property real progress: drawn && !Motion.animate ? 1 : 0

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    onDrawnChanged: {
        if (!drawn) { progress = 0; draw.stop(); return; }
        if (Motion.animate) draw.restart(); else progress = 1;
    }
    Component.onCompleted: if (drawn) { if (Motion.animate) draw.start(); else progress = 1; }

    NumberAnimation {
        id: draw
        target: root
        property: "progress"
        from: 0
        to: 1
        duration: Motion.ms(0.32)
        easing.type: Easing.OutCubic
    }

    // The tick on a 16-unit grid: (3, 8.5) down to (6.5, 12) and up to (13, 4.5).
    readonly property real shortLeg: Math.hypot(3.5, 3.5)
    readonly property real longLeg: Math.hypot(6.5, 7.5)
    readonly property real legs: shortLeg + longLeg

    Shape {
        anchors.centerIn: parent
        width: 16
        height: 16
        scale: root.size / 16
        antialiasing: true
        visible: root.progress > 0
        ShapePath {
            strokeColor: root.color
            strokeWidth: root.lineWidth * 16 / root.size
            capStyle: ShapePath.RoundCap
            joinStyle: ShapePath.RoundJoin
            fillColor: "transparent"
            startX: 3; startY: 8.5
            // The first leg, then as much of the second as the progress reaches.
            PathLine {
                readonly property real t: Math.min(1, root.progress * root.legs / root.shortLeg)
                x: 3 + 3.5 * t; y: 8.5 + 3.5 * t
            }
            PathLine {
                readonly property real t: Math.max(0, (root.progress * root.legs - root.shortLeg) / root.longLeg)
                x: 6.5 + 6.5 * t; y: 12 - 7.5 * t
            }
        }
    }
}
