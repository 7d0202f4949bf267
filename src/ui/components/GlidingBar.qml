import Sorrelin
import QtQuick

// A filled bar whose width follows `goal`. A large change glides; a drift of a few points, as
// a live sample every few seconds brings, snaps, because every gliding frame redraws the
// whole window.
Rectangle {
    id: root
    property real goal: 0
    property real snapBelow: 16

    Component.onCompleted: width = goal
    onGoalChanged: {
        if (Motion.animate && Math.abs(goal - width) >= snapBelow) {
            glide.to = goal;
            glide.restart();
        } else {
            glide.stop();
            width = goal;
        }
    }
    NumberAnimation { id: glide; target: root; property: "width"; duration: Motion.smooth.duration; easing: Motion.smooth.easing }
}
