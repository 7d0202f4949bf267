import Sorrelin
import QtQuick

// A screen coming in: it fades in and settles from a few points below. Use it as the screen's
// transform and name the screen as `target`; `replay()` runs it again (a tab change).
Translate {
    id: root
    property Item target
    property real rise: 10

    function replay() {
        if (!target || !Motion.animate) return;
        target.opacity = 0;
        y = rise;
        entering.restart();
    }
    Component.onCompleted: replay()

    property ParallelAnimation entering: ParallelAnimation {
        NumberAnimation { target: root.target; property: "opacity"; to: 1; duration: Motion.enter.duration; easing: Motion.enter.easing }
        NumberAnimation { target: root; property: "y"; to: 0; duration: Motion.smooth.duration; easing: Motion.smooth.easing }
    }
}
