import Sorrelin
import QtQuick
import QtQuick.Layouts

// "Biggest files": single files and packages anywhere in the home folder, filtered by kind,
// eight at first and up to forty on request.
Panel {
    id: root
    property string filter: ""
    property bool more: false

    readonly property var model: App.model
    readonly property bool busy: model ? model.storageBusy : false
    readonly property var kinds: { void (model ? model.storageShown : null); return StorageView.fileKindsOf(model); }
    readonly property real largest: {
        void (model ? model.storageShown : null);
        const list = model ? model.storageBiggest : null;
        return list && list.count > 0 ? list.get(0).bytes : 0;
    }

    objectName: "bigFiles"
    implicitHeight: column.implicitHeight + 2 * Metrics.pad

    // A filter on a kind that left the list (its last file went to the Trash) falls back to all.
    onKindsChanged: if (filter !== "" && !kinds.some(k => k.id === filter)) filter = ""

    RowFilter {
        id: rows
        source: root.model ? root.model.storageBiggest : null
        role: "kind"
        value: root.filter
        limit: root.more ? 40 : 8
    }

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
                text: "Biggest files"
                font.pixelSize: Metrics.title
                font.weight: Font.DemiBold
            }
            InfoTip { text: "Single files and packages such as a photo library or a virtual machine, anywhere in your home folder. Those in your own folders can go to the Trash from here." }
            Item { Layout.fillWidth: true }
        }

        Flow {
            objectName: "kindChips"
            visible: root.kinds.length >= 2
            Layout.fillWidth: true
            Layout.bottomMargin: Metrics.gap
            spacing: 6
            Repeater {
                model: [{ id: "", title: "All" }].concat(root.kinds)
                Chip {
                    required property var modelData
                    objectName: "chip-" + (modelData.id === "" ? "all" : modelData.id)
                    text: modelData.title
                    style: root.filter === modelData.id ? "warn" : "plain"
                    TapHandler { onTapped: { root.filter = modelData.id; root.more = false; } }
                    HoverHandler { cursorShape: Qt.PointingHandCursor }
                }
            }
        }

        UiText {
            objectName: "empty"
            visible: rows.count === 0
            Layout.topMargin: 6
            Layout.bottomMargin: 6
            text: root.busy ? "Looking for big files…" : "No single file over 100 MB."
            color: Palette.text3
        }

        Repeater {
            model: rows
            StorageItemRow {
                required property var model
                required property int index
                objectName: "file-" + model.name
                Layout.fillWidth: true
                symbol: model.symbol
                tint: Palette.slate
                name: model.name
                detail: StorageView.tilde(App.model, model.path.substring(0, model.path.lastIndexOf("/")))
                date: StorageView.whenOf(App.model, model.opened, model.modified)
                bytes: model.bytes
                maximum: root.largest
                path: model.path
                revealPath: model.path
                canTrash: StorageView.kindCanTrash(model.category) && App.model.canTrash(model.path)
            }
        }

        LinkButton {
            objectName: "showMore"
            visible: rows.matching > 8
            Layout.topMargin: 4
            text: root.more ? "Show fewer" : "Show " + (Math.min(rows.matching, 40) - 8) + " more"
            onClicked: root.more = !root.more
        }
    }
}
