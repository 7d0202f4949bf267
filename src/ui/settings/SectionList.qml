import Sorrelin
import QtQuick
import QtQuick.Layouts

// The panel's sections in their order, reordered by dragging a row by its handle: the row
// follows the pointer, a line shows where it will land, and letting go moves it in the
// preferences, which save at once.
Item {
    id: root
    readonly property var sections: App.prefs ? App.prefs.sections : null
    readonly property real rowHeight: 52
    property int dragFrom: -1
    property real dragY: 0
    // The place the dragged row covers most, and the index it goes before when dropped there
    // (a row moving down goes before the one after that place).
    readonly property int slot: dragFrom < 0 || !sections ? -1
        : Math.max(0, Math.min(sections.count - 1, Math.round((dragY - rowHeight / 2) / rowHeight)))
    readonly property int dropAt: slot > dragFrom ? slot + 1 : slot

    objectName: "sectionList"
    implicitHeight: (sections ? sections.count : 0) * rowHeight
    implicitWidth: 400

    Repeater {
        model: root.sections
        SectionRow {
            id: row
            required property var model
            required property int index
            objectName: "row-" + model.id
            width: root.width
            height: root.rowHeight
            y: root.dragFrom === index ? root.dragY - root.rowHeight / 2 : index * root.rowHeight
            z: root.dragFrom === index ? 2 : 1
            section: model.id
            title: model.title
            detail: model.detail
            symbol: model.symbol
            on: model.on
            dragging: root.dragFrom === index
            Behavior on y { enabled: Motion.animate && root.dragFrom !== row.index; NumberAnimation { duration: Motion.snappy.duration; easing: Motion.snappy.easing } }

            DragHandler {
                target: null
                parent: row.handle
                xAxis.enabled: false
                onActiveChanged: {
                    if (active) {
                        root.dragFrom = row.index;
                        root.dragY = row.index * root.rowHeight + root.rowHeight / 2;
                    } else if (root.dragFrom >= 0) {
                        const from = root.dragFrom, slot = root.slot, to = root.dropAt;
                        root.dragFrom = -1;
                        if (slot !== from) App.prefs.move([from], to);
                    }
                }
                onTranslationChanged: if (active) root.dragY = row.index * root.rowHeight + root.rowHeight / 2 + translation.y
            }
        }
    }

    Rectangle {
        objectName: "dropLine"
        visible: root.dragFrom >= 0 && root.slot !== root.dragFrom
        x: 4
        width: root.width - 8
        height: 2
        radius: 1
        y: root.dropAt * root.rowHeight - 1
        color: Palette.amber
    }
}
