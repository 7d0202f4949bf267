import Sorrelin
import QtQuick
import QtTest

TestCase {
    id: test
    name: "ArmCountdown"
    when: windowShown
    width: 300
    height: 100
    visible: true

    Component {
        id: buttonComponent
        SecondaryButton { text: "Stop 3 leftovers"; armDuration: 250 }
    }

    function cleanup() { Motion.reduced = false; }

    function bar(button) { return findChild(button, "countdown"); }

    function test_anArmedButtonsBarRunsOutAndStartsFullWhenArmedAgain() {
        const button = createTemporaryObject(buttonComponent, test);
        const countdown = bar(button);
        verify(countdown);
        verify(!countdown.visible);
        button.armed = true;
        verify(countdown.visible);
        // It starts full and runs out over the arming time.
        verify(countdown.counting);
        verify(countdown.fraction > 0.5);
        tryVerify(() => countdown.fraction === 0, 5000, "the bar never ran out");
        button.armed = false;
        verify(!countdown.visible);
        button.armed = true;
        verify(countdown.fraction > 0.5, "a new arming starts full, not where the last one ended");
    }

    function test_withReducedMotionTheBarStandsFull() {
        Motion.reduced = true;
        const button = createTemporaryObject(buttonComponent, test);
        const countdown = bar(button);
        button.armed = true;
        verify(countdown.visible);
        verify(!countdown.counting);
        compare(countdown.fraction, 1);
    }
}
