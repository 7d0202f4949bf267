import Sorrelin
import QtQuick
import QtTest

TestCase {
    id: test
    name: "CountingBytes"
    when: windowShown
    width: 300
    height: 100
    visible: true

    Component {
        id: countingComponent
        CountingBytes {}
    }

    function cleanup() { Motion.reduced = false; }

    function test_itCountsUpToTheCoresWordsForTheValue() {
        const label = createTemporaryObject(countingComponent, test, { value: 4.2e9, prefix: "Freed " });
        // Every step is worded by the core; the end is exactly the figure.
        tryCompare(label, "text", "Freed " + Fmt.bytes(4.2e9), 5000);
        compare(label.Accessible.name, "Freed 4.2 GB");
        label.value = 512e6;
        tryCompare(label, "text", "Freed " + Fmt.bytes(512e6), 5000);
    }

    function test_withReducedMotionTheFigureIsThereAtOnce() {
        Motion.reduced = true;
        const label = createTemporaryObject(countingComponent, test, { value: 20e12 });
        compare(label.text, "20.0 TB");
        label.value = 0;
        compare(label.text, "0 bytes");
    }
}
