import Sorrelin
import QtQuick

// Rows that enter one after another: each fades in and rises a few points, later by its
// `index`. Use it as the row's transform and name the row as `target`:
//     transform: Stagger { target: row; index: index }
// Rows past `cap` come with the last group rather than after a long wait.
Translate {
    id: root
    property Item target
    property int index: 0
    property int cap: 10
    property real rise: 6

    y: 0
    Component.onCompleted: {
        if (!target || !Motion.animate) return;
        target.opacity = 0;
        y = rise;
        entering.start();
    }

    property SequentialAnimation entering: SequentialAnimation {
        PauseAnimation { duration: Motion.ms(0.035) * Math.min(root.index, root.cap) }
        ParallelAnimation {
            NumberAnimation { target: root.target; property: "opacity"; to: 1; duration: Motion.enter.duration; easing: Motion.enter.easing }
            NumberAnimation { target: root; property: "y"; to: 0; duration: Motion.enter.duration; easing: Motion.enter.easing }
        }
    }
}
