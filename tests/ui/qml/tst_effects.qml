import Sorrelin
import QtQuick
import QtTest

TestCase {
    id: test
    name: "Effects"
    when: windowShown
    width: 300
    height: 200
    visible: true

    Component {
        id: rowComponent
        Rectangle {
            width: 100
            height: 20
            property alias failShake: shaker
            transform: FailShake { id: shaker; recId: "quit:proc:node" }
        }
    }
    Component {
        id: shineComponent
        Shine { width: 100; height: 30 }
    }

    function cleanup() { Motion.reduced = false; Motion.rendering = false; }

    function test_aRowShakesOnlyWhenItsOwnAdviceFails() {
        const row = createTemporaryObject(rowComponent, test);
        const shaker = row.failShake;
        shaker.failedRec = "quit:other";
        compare(shaker.shakes, 0);
        shaker.failedRec = "quit:proc:node";
        compare(shaker.shakes, 1);
        verify(shaker.running);
        tryCompare(shaker, "running", false, 5000);
        compare(shaker.x, 0);
        // The same failure again only counts once it was cleared in between.
        shaker.failedRec = "";
        shaker.failedRec = "quit:proc:node";
        compare(shaker.shakes, 2);
    }

    function test_withReducedMotionNothingMovesButTheFailureStillCounts() {
        Motion.reduced = true;
        const row = createTemporaryObject(rowComponent, test);
        row.failShake.failedRec = "quit:proc:node";
        compare(row.failShake.shakes, 1);
        verify(!row.failShake.running);
    }

    function test_theShineSweepsOnceOnTriggerAndNeverWhileRendering() {
        const shine = createTemporaryObject(shineComponent, test);
        verify(!shine.visible);
        shine.trigger = true;
        tryVerify(() => shine.visible, 2000, "the sweep did not start");
        tryVerify(() => !shine.visible, 5000, "the sweep did not end");
        shine.trigger = false;
        Motion.rendering = true;
        shine.trigger = true;
        verify(!shine.visible);
    }
}
