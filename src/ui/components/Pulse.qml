import Sorrelin
import QtQuick

// A gentle beat for a label while something runs: the opacity of `target` dips and comes back
// once every `period` milliseconds. The dip goes in a few timed steps, not a per-frame animation:
// a beat can last as long as the window stays open (the Speed tab is live all the time), and
// every animated frame redraws the whole window. Still, at full opacity, with reduced motion,
// while rendering, when not active, or while its target is not on a shown window.
QtObject {
    id: root
    property Item target: null
    property bool active: false
    property int period: Motion.ms(3)
    readonly property var dips: [0.7, 0.45, 0.7]
    readonly property bool beating: active && Motion.animate && target !== null && target.visible
                                    && target.Window.visibility !== Window.Hidden
                                    && target.Window.visibility !== Window.Minimized
    // 0 rests at full opacity; 1..dips.length stand at that dip.
    property int step: 0

    readonly property int stepTime: Motion.ms(0.16)

    property Timer clock: Timer {
        running: root.beating
        repeat: true
        interval: root.step === 0 ? Math.max(1, root.period - root.stepTime * root.dips.length) : root.stepTime
        onTriggered: {
            root.step = (root.step + 1) % (root.dips.length + 1);
            root.target.opacity = root.step === 0 ? 1 : root.dips[root.step - 1];
        }
    }

    onBeatingChanged: {
        if (beating) return;
        step = 0;
        if (target) target.opacity = 1;
    }
}
