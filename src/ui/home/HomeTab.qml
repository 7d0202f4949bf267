import Sorrelin
import QtQuick
import QtQuick.Layouts

// The first screen: one sentence on how the computer is, three health tiles, the most useful
// thing to do in a card of its own, and what comes next.
Item {
    id: root
    readonly property AppModel model: App.model
    // The advice lists signal their rows, not a property; this follows every rebuild.
    property int recsRevision: 0
    Connections {
        target: root.model
        function onRecsChanged() { root.recsRevision++ }
        function onActingChanged() { root.recsRevision++ }
        function onArmedChanged() { root.recsRevision++ }
    }
    readonly property var slow: {
        if (!model) return [];
        model.vitals;
        return HomeWords.rows(model.slowApps).map(a => a.name);
    }
    readonly property var hero: {
        recsRevision;
        return model && model.nowRecs.count > 0 ? model.nowRecs.get(0) : ({});
    }
    readonly property bool hasHero: hero.id !== undefined
    readonly property bool scanned: model !== null && !!model.lastScan

    objectName: "homeTab"

    Flickable {
        id: scroll
        anchors.fill: parent
        contentHeight: column.implicitHeight + 2 * Metrics.padWide
        clip: true
        boundsBehavior: Flickable.StopAtBounds

        ColumnLayout {
            id: column
            x: Metrics.padWide + 6
            y: Metrics.padWide
            width: scroll.width - 2 * x
            spacing: Metrics.pad

            // The header.
            RowLayout {
                Layout.fillWidth: true
                spacing: Metrics.pad
                ColumnLayout {
                    Layout.fillWidth: true
                    spacing: 4
                    UiText {
                        objectName: "homeHeading"
                        Layout.fillWidth: true
                        text: HomeWords.heading(root.slow, root.hero)
                        font.pixelSize: Metrics.heading + 2
                        font.weight: Font.Bold
                    }
                    UiText {
                        objectName: "homeSentence"
                        Layout.fillWidth: true
                        text: HomeWords.sentence(root.slow, root.hero, root.model ? root.model.disk : ({}))
                        color: Palette.text2
                        wrapMode: Text.Wrap
                        maximumLineCount: 2
                    }
                }
                Chip {
                    objectName: "freedChip"
                    Layout.alignment: Qt.AlignTop
                    readonly property string words: HomeWords.freedChip(root.model ? root.model.freedToday : 0)
                    visible: words !== ""
                    text: words
                    symbol: "checkmark"
                    style: "ok"
                    tip: "Space Sorrelin gave back today, counted from free space before and after each clean."
                }
            }

            // The three tiles.
            RowLayout {
                Layout.fillWidth: true
                spacing: Metrics.gapWide
                HealthTile {
                    objectName: "speedTile"
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    label: "Speed"
                    symbol: "gauge.with.needle"
                    words: root.model ? HomeWords.speed(root.model.vitals, root.slow.length) : ({})
                    segments: root.model ? (root.model.vitals, HomeWords.processorBar(root.model.appUsage, root.model.cores, root.model.vitals.cpu)) : []
                    total: 100
                    onClicked: root.model.go(4)
                }
                HealthTile {
                    objectName: "memoryTile"
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    label: "Memory"
                    symbol: "memorychip"
                    words: root.model ? HomeWords.memory(root.model.vitals) : ({})
                    segments: root.model ? HomeWords.memoryBar(root.model.vitals) : []
                    total: 100
                    onClicked: root.model.go(4)
                }
                HealthTile {
                    objectName: "diskTile"
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    label: "Disk"
                    symbol: "internaldrive"
                    words: root.model ? HomeWords.disk(root.model.disk, root.scanned, root.model.cleanable, root.model.pace) : ({})
                    segments: root.model ? HomeWords.diskBar(root.model.disk, root.model.cleanable) : []
                    total: root.model ? root.model.disk.total : 0
                    onClicked: root.model.go(2)
                }
            }

            // The one card.
            HeroCard {
                Layout.fillWidth: true
                visible: root.hasHero
                rec: root.hero
            }
            CheckingCard {
                Layout.fillWidth: true
                visible: !root.hasHero && !root.scanned && root.model !== null && root.model.isScanning
            }
            AllClearCard {
                Layout.fillWidth: true
                visible: !root.hasHero && !(!root.scanned && root.model !== null && root.model.isScanning)
            }

            RecPanel {
                objectName: "nextUp"
                Layout.fillWidth: true
                title: "Next up"
                recs: root.model ? root.model.nowRecs : null
                skip: 1
                empty: "Nothing else right now."
                batch: true
            }
            RecPanel {
                objectName: "canWait"
                Layout.fillWidth: true
                title: "Can wait"
                recs: root.model ? root.model.laterRecs : null
                empty: "Nothing waiting."
                info: "Worth doing, but nothing is slow or full because of them yet. Sorrelin moves them up when they start to matter."
            }

            // WatchingFooter.
            Row {
                Layout.fillWidth: true
                Layout.topMargin: Metrics.gap
                spacing: Metrics.gap
                Rectangle { id: watchDot; anchors.verticalCenter: parent.verticalCenter; width: 7; height: 7; radius: 3.5; color: Palette.green }
                UiText {
                    objectName: "watching"
                    width: column.width - 20
                    text: "<b>Watching in the background.</b> You get an alert when an app you are not using keeps the processor busy, or memory stays tight, for 10 minutes, or when free space drops under 10 GB."
                    textFormat: Text.StyledText
                    color: Palette.text3
                    font.pixelSize: Metrics.small
                    wrapMode: Text.Wrap
                    elide: Text.ElideNone
                }
            }
        }
    }
}
