import Sorrelin
import QtQuick
import QtQuick.Layouts

// One tier: its header with the count, the size, a tip and "Select all", then its rows, the
// first six of a long list with the rest behind a "more" row.
ColumnLayout {
    id: root
    readonly property AppModel model: App.model
    property int tier: 0
    property bool firstScan: false
    readonly property var items: model ? model.itemsIn(tier) : null
    readonly property var words: {
        if (!model) return CleanWords.tier(tier, null, firstScan);
        model.selected; model.items.count;
        return CleanWords.tier(tier, items, firstScan);
    }
    readonly property color tint: Palette.named(words.colour)
    readonly property bool expanded: model !== null && model.expanded.indexOf(tier) >= 0
    readonly property int count: items ? items.count : 0
    readonly property int shown: CleanWords.shownRows(count, expanded)
    readonly property real maxSize: {
        // A rescan changes sizes in place; the scan's date marks that.
        if (model) model.lastScan;
        let most = 1;
        for (let row = 0; row < count; ++row) most = Math.max(most, items.get(row).size);
        return most;
    }

    objectName: "tier" + tier
    spacing: Metrics.gap

    // TierHeader.
    RowLayout {
        Layout.fillWidth: true
        Layout.topMargin: Metrics.gapTight
        spacing: Metrics.gap
        IconTile { symbol: root.words.symbol; tint: root.tint; size: 26 }
        UiText {
            text: root.words.title
            font.pixelSize: Metrics.title
            font.weight: Font.DemiBold
        }
        CountBadge { n: root.count; visible: root.count > 0 }
        UiText {
            text: root.words.totalText
            visible: root.count > 0
            color: Palette.text2
        }
        InfoTip { text: root.words.tip }
        Item { Layout.fillWidth: true }
        LinkButton {
            objectName: "selectAll"
            visible: root.words.open > 0
            text: root.words.select
            color: Palette.text2
            onClicked: root.model.setAll(root.tier, !root.words.allTicked)
        }
    }

    // TierRows.
    Panel {
        Layout.fillWidth: true
        implicitHeight: rows.implicitHeight + 8
        Column {
            id: rows
            x: 0
            y: 4
            width: parent.width

            Item {
                objectName: "emptyTier"
                visible: root.count === 0
                width: rows.width
                height: 46
                Row {
                    anchors { left: parent.left; leftMargin: Metrics.pad; verticalCenter: parent.verticalCenter }
                    spacing: Metrics.gap
                    Glyph {
                        anchors.verticalCenter: parent.verticalCenter
                        visible: !root.firstScan
                        symbol: "checkmark"
                        color: Palette.green
                        size: 15
                    }
                    UiText {
                        anchors.verticalCenter: parent.verticalCenter
                        text: root.words.empty
                        color: Palette.text3
                    }
                }
            }
            Repeater {
                model: root.items
                delegate: ItemRow {
                    required property int index
                    required property var model
                    width: rows.width
                    visible: index < root.shown
                    row: model
                    rowIndex: index
                    maxSize: root.maxSize
                    tint: root.tint
                }
            }
            MoreRow {
                width: rows.width
                visible: root.count > root.shown
                words: root.count > root.shown ? (root.model.selected, CleanWords.more(root.items, root.shown)) : ({})
                onClicked: root.model.setExpanded(root.tier, true)
            }
            LinkButton {
                objectName: "showFewer"
                visible: root.expanded && root.count > CleanWords.shownRows(root.count, false)
                x: Metrics.pad
                height: 36
                text: "Show fewer"
                symbol: "chevron.up"
                color: Palette.text2
                onClicked: root.model.setExpanded(root.tier, false)
            }
        }
    }
}
