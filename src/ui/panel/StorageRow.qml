import Sorrelin
import QtQuick
import QtQuick.Layouts

// What takes the space: a button that starts the first walk, then the three biggest
// categories, which open the Storage tab.
PanelSection {
    id: root
    readonly property var model: App.model
    readonly property bool measured: !!model && !!model.storageShown
    readonly property var biggest: {
        void (model ? model.storageShown : 0);
        const list = model ? model.storageCategories : null;
        const out = [];
        for (let i = 0; list && i < list.count && out.length < 3; ++i) {
            const c = list.get(i);
            if (c.bytes > 0) out.push(c);
        }
        return out;
    }
    objectName: "section-storage"

    RowLayout {
        Layout.fillWidth: true
        spacing: Metrics.gapWide
        IconTile { symbol: "chart.pie"; tint: Palette.purple; size: 30 }
        UiText {
            Layout.fillWidth: true
            text: "See what takes your space"
            font.weight: Font.Medium
        }
        SecondaryButton {
            objectName: "measure"
            visible: !root.measured
            text: root.model && root.model.storageBusy ? "Measuring" : "Measure"
            busy: root.model !== null && root.model.storageBusy
            enabled: !busy
            implicitHeight: 28
            onClicked: root.model.measureStorage()
        }
        LinkButton {
            objectName: "open"
            visible: root.measured
            text: "Open"
            onClicked: {
                const storage = root.model.tabs.find(t => t.title === "Storage");
                root.model.showWindow(storage ? storage.id : -1);
                Desktop.closePanel();
            }
        }
    }
    Repeater {
        model: root.measured ? root.biggest : []
        RowLayout {
            required property var modelData
            Layout.fillWidth: true
            Layout.leftMargin: 42
            spacing: Metrics.gap
            Rectangle { width: 7; height: 7; radius: 3.5; color: Palette.named(modelData.colour) }
            UiText { Layout.fillWidth: true; text: modelData.title; color: Palette.text2; font.pixelSize: Metrics.small }
            UiText { text: Fmt.bytes(modelData.bytes); color: Palette.text3; font.pixelSize: Metrics.small }
        }
    }
}
