import Sorrelin
import QtQuick
import QtQuick.Layouts

// "Where it goes": every category biggest first, then the system's share and swap once the
// walk is complete, or a row saying the walk goes on.
Panel {
    id: root
    property var open: ({})
    property real systemBytes: 0
    property real swapBytes: 0
    signal toggle(string kind)

    readonly property var model: App.model
    readonly property bool busy: model ? model.storageBusy : false
    readonly property var report: model ? model.storageShown : null
    readonly property var disk: model ? model.disk : ({})
    readonly property real largest: {
        let most = Math.max(systemBytes, swapBytes);
        void root.report; // a new report may change the first row's size without the count
        const list = model ? model.storageCategories : null;
        if (list && list.count > 0) most = Math.max(most, list.get(0).bytes);
        return most;
    }

    objectName: "categoryList"
    implicitHeight: column.implicitHeight + 2 * Metrics.pad

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: Metrics.pad
        spacing: 2

        RowLayout {
            Layout.fillWidth: true
            Layout.bottomMargin: Metrics.gap
            spacing: Metrics.gap
            UiText {
                text: "Where it goes"
                font.pixelSize: Metrics.title
                font.weight: Font.DemiBold
            }
            InfoTip { text: "Sizes are what the files take on disk, with hard links counted once. Click a row to see its biggest folders and files." }
            Item { Layout.fillWidth: true }
            Chip {
                visible: root.busy
                text: "Filling in as Sorrelin measures"
                live: true
            }
        }

        Repeater {
            model: root.model ? root.model.storageCategories : null
            CategoryRow {
                required property var model
                objectName: "category-" + model.kind
                Layout.fillWidth: true
                kind: model.kind
                title: model.title
                blurb: model.blurb
                symbol: model.symbol
                colour: model.colour
                bytes: model.bytes
                maximum: root.largest
                diskTotal: root.disk.total ?? 0
                unreadable: model.unreadable
                unreadableFolders: model.unreadableFolders
                canTrash: model.canTrash
                items: model.items
                open: root.open[model.kind] === true
                onToggled: root.toggle(model.kind)
            }
        }

        FixedRow {
            objectName: "systemRow"
            Layout.fillWidth: true
            visible: !!root.report && root.report.complete && !root.busy && root.systemBytes > 0
            symbol: "gearshape.2"
            title: "System data"
            note: Words.say("Logs, other users, snapshots and folders macOS keeps private.")
                  + ((root.disk.reserved ?? 0) > 0 ? " " + Fmt.bytes(root.disk.reserved) + " of it is kept back by the file system for the administrator." : "")
            bytes: root.systemBytes
            maximum: root.largest
            diskTotal: root.disk.total ?? 0
        }
        FixedRow {
            objectName: "swapRow"
            Layout.fillWidth: true
            visible: !!root.report && root.report.complete && !root.busy && root.swapBytes > 0
            symbol: "memorychip"
            colour: "orange"
            title: "Swap and sleep image"
            note: Words.say("Memory macOS moved to the disk. The Speed tab shows why; a restart empties it.")
            bytes: root.swapBytes
            maximum: root.largest
            diskTotal: root.disk.total ?? 0
        }
        FixedRow {
            objectName: "stillMeasuring"
            Layout.fillWidth: true
            visible: root.busy
            symbol: "hourglass"
            title: "Still measuring"
            note: Fmt.grouped(root.report ? root.report.files : 0) + " files so far. The rest of the disk fills in as Sorrelin gets to it."
            busy: true
        }
    }
}
