import Sorrelin
import QtQuick
import QtQuick.Layouts

// Old caches cleared from the panel in two clicks, with what the clean gave back standing for
// ten minutes afterwards.
PanelSection {
    id: root
    readonly property var model: App.model
    // Moves when the "Freed" line is due to give way, so the row reads the clock again.
    property int tick: 0
    readonly property var row: {
        void tick;
        void (model ? [model.cleanProgress, model.report, model.lastScan, model.disk, model.cachesToClearBytes] : 0);
        return PanelView.cachesOf(model);
    }
    readonly property bool armed: model !== null && model.armed === "menu"
    objectName: "section-quickClean"

    Timer {
        running: (root.row.changeIn ?? -1) > 0
        interval: Math.max(1, Math.ceil((root.row.changeIn ?? 0) * 1000))
        onTriggered: root.tick++
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: Metrics.gapWide
        IconTile { symbol: "custom.broom"; tint: Palette.amber; size: 30 }
        Item {
            Layout.fillWidth: true
            implicitHeight: 30
            Skeleton {
                visible: root.row.state === "placeholder"
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(parent.width, 150)
                height: 12
            }
            LabelRow {
                objectName: "words"
                visible: root.row.state !== "placeholder"
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, parent.width)
                text: root.row.words ?? ""
                busy: root.row.state === "clearing"
                done: root.row.state === "freed"
                color: root.row.state === "freed" ? Palette.greenText : Palette.text
                weight: Font.Medium
            }
            HoverHandler { id: hover; enabled: (root.row.tip ?? "") !== "" }
            Tip { text: root.row.tip ?? ""; shown: hover.hovered }
        }
        SecondaryButton {
            objectName: "clear"
            visible: root.row.button === true
            armed: root.armed
            text: root.armed ? "Click again" : "Clear"
            implicitHeight: 28
            onClicked: root.model.armQuickClean()
        }
    }
}
