import Sorrelin
import QtQuick

// A gentle beat for a label while something runs: the opacity of `target` eases down and up.
// Still (and at full opacity) with reduced motion, while rendering, or when not running.
SequentialAnimation {
    id: root
    property Item target
    property bool active: false

    running: active && Motion.animate && target !== null && target.visible
    loops: Animation.Infinite
    alwaysRunToEnd: true
    NumberAnimation { target: root.target; property: "opacity"; to: 0.45; duration: Motion.ms(0.9); easing.type: Easing.InOutSine }
    NumberAnimation { target: root.target; property: "opacity"; to: 1; duration: Motion.ms(0.9); easing.type: Easing.InOutSine }
}
