import Sorrelin
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts

// The Storage tab: the home folder's map from the model's shown report (the partial one
// while a walk runs, else the last), as a bar of the whole disk, the categories, the biggest
// files and the apps. Which categories stand open is this view's own state.
Item {
    id: root
    property var open: ({})

    readonly property var model: App.model
    readonly property var report: model ? model.storageShown : null
    readonly property var slices: {
        if (!model) return [];
        void model.storageShown; void model.disk; void model.vitals; void model.storageBusy;
        return StorageView.slicesOf(model);
    }
    function sliceBytes(id) {
        for (const s of slices) if (s.id === id) return s.value;
        return 0;
    }
    function toggle(kind) {
        const next = Object.assign({}, open);
        if (next[kind]) delete next[kind];
        else next[kind] = true;
        open = next;
    }
    function reveal(kind) {
        if (!open[kind]) toggle(kind);
        const row = categories.findRow(kind);
        if (row) flick.contentY = Math.min(Math.max(0, row.mapToItem(content, 0, 0).y - Metrics.pad), Math.max(0, flick.contentHeight - flick.height));
    }

    objectName: "storageTab"

    Flickable {
        id: flick
        anchors.fill: parent
        contentWidth: width
        contentHeight: content.implicitHeight + 2 * Metrics.padWide
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        ScrollBar.vertical: ScrollBar { policy: flick.contentHeight > flick.height ? ScrollBar.AsNeeded : ScrollBar.AlwaysOff }

        ColumnLayout {
            id: content
            x: Metrics.padWide
            y: Metrics.padWide
            width: flick.width - 2 * Metrics.padWide
            spacing: Metrics.pad

            StorageHeader { Layout.fillWidth: true }

            StorageEmpty {
                visible: !root.report
                Layout.fillWidth: true
                Layout.preferredHeight: Math.max(implicitHeight, flick.height - 120)
            }

            DiskMap {
                visible: !!root.report
                Layout.fillWidth: true
                slices: root.slices
                onOpenKind: kind => root.reveal(kind)
            }

            GridLayout {
                id: grid
                readonly property bool wide: content.width >= 980
                visible: !!root.report
                Layout.fillWidth: true
                columns: wide ? 2 : 1
                columnSpacing: Metrics.pad
                rowSpacing: Metrics.pad

                CategoryList {
                    id: categories
                    Layout.fillWidth: !grid.wide
                    Layout.preferredWidth: grid.wide ? Math.round((content.width - Metrics.pad) * 0.56) : -1
                    Layout.alignment: Qt.AlignTop
                    Layout.rowSpan: grid.wide ? 2 : 1
                    open: root.open
                    systemBytes: root.sliceBytes("system")
                    swapBytes: root.sliceBytes("swap")
                    onToggle: kind => root.toggle(kind)
                    function findRow(kind) { return root.findChildNamed(categories, "category-" + kind); }
                }
                BigFilesPanel {
                    Layout.fillWidth: true
                    Layout.alignment: Qt.AlignTop
                }
                AppsPanel {
                    Layout.fillWidth: true
                    Layout.alignment: Qt.AlignTop
                }
            }
        }
    }

    function findChildNamed(item, name) {
        if (!item) return null;
        if (item.objectName === name) return item;
        for (let i = 0; i < item.children.length; ++i) {
            const found = findChildNamed(item.children[i], name);
            if (found) return found;
        }
        return null;
    }
}
