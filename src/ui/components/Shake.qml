import Sorrelin
import QtQuick

// A short sideways shake that says "not like that". Use it as a transform and call `start()`:
//     transform: Shake { id: shake }
// With reduced motion nothing moves.
Translate {
    id: root
    property real distance: 7
    readonly property bool running: shaking.running

    function start() {
        if (!Motion.animate) return;
        shaking.restart();
    }

    property SequentialAnimation shaking: SequentialAnimation {
        NumberAnimation { target: root; property: "x"; to: -root.distance; duration: Motion.ms(0.05); easing.type: Easing.OutQuad }
        NumberAnimation { target: root; property: "x"; to: root.distance * 0.8; duration: Motion.ms(0.08); easing.type: Easing.InOutQuad }
        NumberAnimation { target: root; property: "x"; to: -root.distance * 0.5; duration: Motion.ms(0.07); easing.type: Easing.InOutQuad }
        NumberAnimation { target: root; property: "x"; to: root.distance * 0.25; duration: Motion.ms(0.06); easing.type: Easing.InOutQuad }
        NumberAnimation { target: root; property: "x"; to: 0; duration: Motion.ms(0.05); easing.type: Easing.OutQuad }
    }
}
