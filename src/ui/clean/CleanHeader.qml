import Sorrelin
import QtQuick
import QtQuick.Layouts

// The whole disk as a ring, what can go, what clearing the ticks would leave, and the three
// tiers as tiles that tick or untick all of a tier.
Panel {
    id: root
    readonly property AppModel model: App.model
    property bool firstScan: false
    readonly property var disk: model ? model.disk : ({})
    // Sums over the tiers follow every tick and every scan.
    readonly property var totals: {
        if (!model) return [0, 0, 0];
        model.selected; model.items.count;
        return [model.total(0), model.total(1), model.total(2)];
    }

    objectName: "cleanHeader"
    implicitHeight: body.implicitHeight + 2 * Metrics.pad

    RowLayout {
        id: body
        anchors { fill: parent; margins: Metrics.pad; leftMargin: Metrics.padWide }
        spacing: Metrics.padWide + 4

        Ring {
            id: ring
            objectName: "diskRing"
            Layout.alignment: Qt.AlignVCenter
            size: 138
            lineWidth: 13
            total: root.disk.total || 0
            segments: root.model ? CleanWords.ring(root.disk, root.model.vitals.swapUsed || 0, root.totals[0], root.totals[1], root.totals[2]) : []
            Column {
                anchors.centerIn: parent
                spacing: 1
                UiText {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: Fmt.bytes(root.disk.available || 0)
                    font.pixelSize: Metrics.title + 2
                    font.weight: Font.DemiBold
                }
                UiText {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: "free of " + Fmt.bytes(root.disk.total || 0)
                    color: Palette.text3
                    font.pixelSize: Metrics.caption
                }
            }
            HoverHandler { id: ringHover }
            Tip {
                shown: ringHover.hovered
                text: "The ring is your whole disk. Grey is apps and your files, striped is swap from memory, colour is what Sorrelin can clear, green is free."
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            Layout.alignment: Qt.AlignVCenter
            spacing: 6

            UiText {
                objectName: "cleanHeadline"
                Layout.fillWidth: true
                text: CleanWords.headline(root.model !== null && !!root.model.lastScan, root.model ? root.model.cleanable : 0)
                font.pixelSize: Metrics.heading + 2
                font.weight: Font.Bold
            }
            UiText {
                objectName: "tickLine"
                Layout.fillWidth: true
                text: CleanWords.tickLine(root.model ? root.model.tickedTotal : 0, root.disk.available || 0)
                color: Palette.text2
            }
            Flow {
                Layout.fillWidth: true
                Layout.topMargin: 2
                spacing: Metrics.gapWide
                LegendEntry {
                    colour: Palette.otherStroke
                    text: "Apps and your files"
                    tip: "Apps, the system and your own documents. Sorrelin never suggests these."
                }
                LegendEntry {
                    colour: Palette.orange
                    striped: true
                    text: "Swap"
                    tip: "Memory the system moved onto your disk because RAM ran out. The Speed tab shows why, and a restart empties it."
                }
                LegendEntry {
                    colour: Palette.green
                    text: "Free"
                    tip: "What Files calls available: free space plus space the system can clear on its own."
                }
            }
            RowLayout {
                Layout.fillWidth: true
                Layout.topMargin: Metrics.gap
                spacing: Metrics.gap
                Repeater {
                    model: 3
                    delegate: TierTile {
                        required property int index
                        Layout.fillWidth: true
                        Layout.preferredWidth: 1
                        tier: index
                        firstScan: root.firstScan
                    }
                }
            }
        }
    }
}
