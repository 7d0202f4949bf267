import Sorrelin
import QtQuick

// Work in progress as a ring: filled to `fraction` when it is a number, a turning arc when it
// is not known yet. With reduced motion the unknown state stands as a quarter arc.
Item {
    id: root
    property var fraction: undefined
    property real size: 22
    property real lineWidth: 3
    property color color: Palette.amber
    property color track: Palette.track

    implicitWidth: size
    implicitHeight: size
    Accessible.role: Accessible.ProgressBar
    Accessible.name: known ? Math.round(fraction * 100) + "%" : "Working"

    readonly property bool known: typeof fraction === "number" && isFinite(fraction)
    readonly property real shown: known ? Math.max(0, Math.min(1, fraction)) : 0.25

    property real animated: shown
    Behavior on animated { NumberAnimation { duration: Motion.smooth.duration; easing.type: Easing.OutCubic } }

    RingView {
        id: ring
        anchors.fill: parent
        lineWidth: root.lineWidth
        gap: 0
        track: root.track
        roundCaps: true
        segments: [{ id: "done", value: root.animated, color: root.color }]
        total: 1
        RotationAnimation on rotation {
            running: !root.known && Motion.animate && root.visible && root.Window.visibility !== Window.Hidden
                     && root.Window.visibility !== Window.Minimized
            from: 0
            to: 360
            duration: 1000
            loops: Animation.Infinite
        }
    }
}
