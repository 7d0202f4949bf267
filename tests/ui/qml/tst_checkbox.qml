import Sorrelin
import QtQuick
import QtTest

TestCase {
    id: test
    name: "CheckBox"
    when: windowShown
    width: 200
    height: 100
    visible: true

    Component {
        id: boxComponent
        CheckBox { x: 20; y: 20; size: 20 }
    }
    SignalSpy { id: spy; signalName: "toggled" }

    function make(props) {
        const box = createTemporaryObject(boxComponent, test, props);
        spy.clear();
        spy.target = box;
        return box;
    }

    function test_aClickAsksToToggleAndTheOwnerDecides() {
        const box = make({ on: false });
        mouseClick(box);
        compare(spy.count, 1);
        // The box does not flip itself: `on` is the owner's, bound to the model.
        compare(box.on, false);
        box.on = true;
        mouseClick(box);
        compare(spy.count, 2);
    }

    function test_aLockedBoxIgnoresClicksAndKeys() {
        const box = make({ on: true, locked: true });
        mouseClick(box);
        box.forceActiveFocus();
        keyClick(Qt.Key_Space);
        box.request();
        compare(spy.count, 0);
        compare(box.Accessible.description, "kept");
        compare(box.Accessible.checkable, false);
    }

    function test_aDisabledBoxIgnoresClicks() {
        const box = make({ enabled: false });
        mouseClick(box);
        compare(spy.count, 0);
    }

    function test_spaceTogglesAFocusedBox() {
        const box = make({});
        box.forceActiveFocus();
        keyClick(Qt.Key_Space);
        compare(spy.count, 1);
    }

    function test_theStateReadsInWordsForAssistiveTools_data() {
        return [
            { tag: "ticked", props: { on: true }, words: "ticked" },
            { tag: "not ticked", props: { on: false }, words: "not ticked" },
            { tag: "half", props: { partial: true }, words: "partly ticked" },
            { tag: "locked wins", props: { on: true, partial: true, locked: true }, words: "kept" },
        ];
    }
    function test_theStateReadsInWordsForAssistiveTools(data) {
        const box = make(data.props);
        compare(box.Accessible.description, data.words);
    }
}
