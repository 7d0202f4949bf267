import Sorrelin
import QtQuick
import QtTest

TestCase {
    id: test
    name: "SegmentedTabs"
    when: windowShown
    width: 700
    height: 100
    visible: true

    Component {
        id: tabsComponent
        SegmentedTabs { items: ["Home", "Storage", "Clean", "Projects", "Speed", "Week"] }
    }
    SignalSpy { id: spy; signalName: "activated" }

    function test_aClickNamesTheTabAndTheOwnerMovesTheSelection() {
        const tabs = createTemporaryObject(tabsComponent, test, { selection: 0 });
        spy.target = tabs;
        spy.clear();
        waitForRendering(tabs);
        // Third tab: find it by its accessible name rather than by guessing coordinates.
        const tab = findChild(tabs, "tab-Clean");
        verify(tab);
        mouseClick(tab);
        compare(spy.count, 1);
        compare(spy.signalArguments[0][0], 2);
        compare(tabs.selection, 0);
    }

    function test_theDotMarksOneTabByIndexOrByItem() {
        const tabs = createTemporaryObject(tabsComponent, test, { dot: 4 });
        verify(tabs.dotAt(4));
        verify(!tabs.dotAt(3));
        tabs.items = [{ title: "Day" }, { title: "Week", dot: true }];
        tabs.dot = -1;
        verify(tabs.dotAt(1));
        verify(!tabs.dotAt(0));
        compare(tabs.titleAt(1), "Week");
        compare(tabs.titleAt(7), "");
    }

    function test_givenWidthsAreKept() {
        const tabs = createTemporaryObject(tabsComponent, test, { items: ["A", "B"], widths: [90, 40] });
        waitForRendering(tabs);
        compare(findChild(tabs, "tab-A").width, 90);
        compare(findChild(tabs, "tab-B").width, 40);
    }
}
