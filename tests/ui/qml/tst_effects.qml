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
    Component {
        id: skeletonComponent
        Item {
            width: 120; height: 20
            property alias shine: shine
            Rectangle { anchors.fill: parent; Shine { id: shine; anchors.fill: parent; looping: true } }
        }
    }
    Component {
        id: beatingComponent
        Rectangle {
            id: beating
            width: 10; height: 10
            property alias pulse: pulse
            Pulse { id: pulse; target: beating; active: true; period: 1200 }
        }
    }

    Component {
        id: enteringComponent
        Rectangle {
            id: row
            width: 100
            height: 20
            property alias stagger: stagger
            transform: [
                Stagger { id: stagger; target: row; index: 3 },
                ScreenEntrance { target: row },
                HoverLift { objectName: "lift"; hovered: row.lifted }
            ]
            property bool lifted: false
        }
    }
    Component {
        id: tippedComponent
        SecondaryButton { text: "Scan again"; tip: "Scan again. The last scan took 14 seconds." }
    }

    function cleanup() { Motion.reduced = false; Motion.rendering = false; }

    function test_rowsEnterAndEndFullyShownAndInPlace() {
        const row = createTemporaryObject(enteringComponent, test);
        verify(row.opacity < 1, "the entrance did not start");
        tryCompare(row, "opacity", 1, 5000);
        tryCompare(row.stagger, "y", 0, 5000);
        row.lifted = true;
        tryVerify(() => row.transform[2].y < 0, 5000, "the card did not rise");
    }

    function test_withReducedMotionRowsStandInPlaceAtOnce() {
        Motion.reduced = true;
        const row = createTemporaryObject(enteringComponent, test);
        compare(row.opacity, 1);
        compare(row.stagger.y, 0);
        row.lifted = true;
        compare(row.transform[2].y, 0);
    }

    function test_aButtonsTipShowsUnderThePointerAndGoesWithIt() {
        const button = createTemporaryObject(tippedComponent, test);
        const tip = findChild(button, "tip");
        verify(tip);
        verify(!tip.visible);
        mouseMove(button, button.width / 2, button.height / 2);
        tryVerify(() => tip.visible, 5000, "the tip never showed");
        mouseMove(test, test.width - 2, test.height - 2);
        tryVerify(() => !tip.visible, 5000, "the tip stayed");
    }

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

    // A loop left running on something nobody sees redraws the window without end.
    function test_aLoopingShineSweepsOnlyWhileItsShapeIsShown() {
        const holder = createTemporaryObject(skeletonComponent, test);
        tryVerify(() => holder.shine.sweeping, 2000, "the shine does not loop on a shown skeleton");
        holder.visible = false;
        verify(!holder.shine.sweeping, "the shine loops on a hidden skeleton");
        holder.visible = true;
        verify(holder.shine.sweeping);
        Motion.reduced = true;
        verify(!holder.shine.sweeping, "the shine loops with reduced motion");
    }

    function test_aBeatDipsAndComesBackAndStandsStillWhenHidden() {
        const dot = createTemporaryObject(beatingComponent, test);
        verify(dot.pulse.beating);
        tryVerify(() => dot.opacity < 0.5, 3000, "the beat never dipped");
        tryVerify(() => dot.opacity === 1, 3000, "the beat never came back");
        tryVerify(() => dot.opacity < 1, 3000, "the beat did not come again");
        dot.visible = false;
        verify(!dot.pulse.beating);
        compare(dot.opacity, 1, "a stopped beat leaves its label dimmed");
        dot.visible = true;
        verify(dot.pulse.beating);
        Motion.rendering = true;
        verify(!dot.pulse.beating, "the beat runs while rendering");
        compare(dot.opacity, 1);
    }
}
