import Sorrelin
import QtQuick
import QtQuick.Layouts

// What slows the computer right now, and what really fixes it: four vital cards, the causes
// with their fixes, and who uses the machine. The window that shows it is live, so the figures
// follow every 3-second sample of the monitor.
Item {
    id: root
    readonly property AppModel model: App.model

    SpeedState { id: speed; model: root.model }

    ScrollPage {
        anchors.fill: parent

        PageHeading {
            width: parent.width
            title: "Speed"
            subtitle: "What is slowing your computer right now, and what really fixes it."
            StatusPill {
                objectName: "statePill"
                text: speed.pill.text || ""
                symbol: speed.pill.symbol || ""
                fg: Palette.named(speed.pill.tint || "greenText")
                bg: Palette.named(speed.pill.tint || "greenText", 0.12)
            }
            StatusPill {
                text: "Live"
                symbol: "clock"
                live: true
                tip: "Updates every 3 seconds while this window is open, and once a minute in the background. Alerts come only when a slowdown lasts 10 minutes."
            }
        }

        // The four vital cards.
        RowLayout {
            width: parent.width
            spacing: Metrics.gapWide

            VitalCard {
                objectName: "processorCard"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                Layout.fillHeight: true
                symbol: "cpu"
                tint: Palette.blue
                label: "Processor"
                info: speed.processor.info || ""
                value: speed.processor.value || ""
                unit: "busy"
                sub: speed.processor.sub || ""
                accessory: Chip {
                    objectName: "freed"
                    visible: (speed.processor.freed || "") !== ""
                    text: speed.processor.freed || ""
                    symbol: "checkmark"
                    style: "ok"
                }
                bar: StackedBar {
                    anchors.fill: parent
                    segments: speed.processor.segments || []
                    total: 100
                    lineWidth: 6
                }
            }
            VitalCard {
                objectName: "memoryCard"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                Layout.fillHeight: true
                symbol: "memorychip"
                tint: Palette.memText
                label: "Memory"
                info: speed.memory.info || ""
                value: speed.memory.value || ""
                unit: "free"
                sub: speed.memory.sub || ""
                accessory: Tag {
                    objectName: "memoryWord"
                    text: speed.memory.word || ""
                    fg: Palette.named(speed.memory.fg || "greenText")
                    bg: Palette.named(speed.memory.bar || "green", 0.14)
                }
                bar: StackedBar {
                    anchors.fill: parent
                    segments: [{ id: "used", value: 100 - (speed.memory.free || 0), color: speed.memory.bar || "green" }]
                    total: 100
                    lineWidth: 6
                }
            }
            VitalCard {
                objectName: "swapCard"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                Layout.fillHeight: true
                symbol: "internaldrive"
                tint: Palette.purple
                label: "Swap"
                info: speed.swap.info || ""
                value: speed.swap.value || ""
                valueColor: speed.swap.warn ? Palette.amberText : Palette.text
                sub: speed.swap.sub || ""
                bar: StackedBar {
                    anchors.fill: parent
                    segments: (speed.swap.used || 0) > 0 ? [{ id: "swap", value: speed.swap.used, color: speed.swap.warn ? "amber" : "purple", striped: true }] : []
                    total: Math.max(1, speed.swap.total || 0)
                    lineWidth: 6
                }
            }
            VitalCard {
                objectName: "uptimeCard"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                Layout.fillHeight: true
                symbol: "power"
                tint: Palette.teal
                label: "On for"
                value: speed.uptime.value || ""
                unit: speed.uptime.unit || ""
                sub: speed.uptime.sub || ""
                accessory: Chip {
                    objectName: "heat"
                    text: speed.uptime.heat ? speed.uptime.heat.text : ""
                    symbol: speed.uptime.heat ? speed.uptime.heat.symbol : ""
                    fg: Palette.named(speed.uptime.heat ? speed.uptime.heat.tint : "greenText")
                    bg: Palette.named(speed.uptime.heat ? speed.uptime.heat.tint : "greenText", 0.12)
                    tip: speed.uptime.heatInfo || ""
                }
            }
        }

        // What is slowing it down.
        Panel {
            objectName: "causes"
            width: parent.width
            implicitHeight: causes.implicitHeight + 2 * Metrics.pad
            ColumnLayout {
                id: causes
                anchors.fill: parent
                anchors.margins: Metrics.pad
                spacing: Metrics.gap
                RowLayout {
                    spacing: 6
                    UiText { text: "What is slowing it down"; font.pixelSize: Metrics.title; font.weight: Font.DemiBold }
                    InfoTip { text: "Ranked by how much each one slows your computer right now. Every fix here quits, stops or restarts something, so the processor or memory it held really comes back." }
                }
                Repeater {
                    model: speed.causes
                    delegate: CauseRow {
                        required property var model
                        Layout.fillWidth: true
                        rec: model
                        stopCount: root.model ? root.model.leftovers.count : 0
                    }
                }
                RowLayout {
                    objectName: "nothingSlow"
                    visible: speed.causeCount === 0
                    Layout.fillWidth: true
                    Layout.topMargin: 4
                    Layout.bottomMargin: 4
                    spacing: Metrics.gapWide
                    IconTile { symbol: "checkmark"; tint: Palette.green; size: 32 }
                    ColumnLayout {
                        spacing: 2
                        Layout.fillWidth: true
                        UiText { text: "Nothing is slowing your computer right now"; font.weight: Font.DemiBold }
                        UiText { text: "No app is busy in the background and nothing is left over."; color: Palette.text3; font.pixelSize: Metrics.small }
                    }
                }
                RowLayout {
                    objectName: "claudeRow"
                    visible: speed.claude !== null && speed.claude !== undefined
                    Layout.fillWidth: true
                    spacing: Metrics.gapWide
                    IconTile { symbol: "sparkle"; tint: Palette.claude; size: 32 }
                    ColumnLayout {
                        spacing: 2
                        Layout.fillWidth: true
                        UiText { text: speed.claude ? speed.claude.name : ""; font.weight: Font.DemiBold }
                        UiText { text: speed.claude ? speed.claude.sub : ""; color: Palette.text3; font.pixelSize: Metrics.small }
                    }
                    UiText { text: speed.claude ? speed.claude.memory : ""; color: Palette.memText; font.weight: Font.DemiBold }
                    UiText { text: speed.claude ? speed.claude.share : ""; color: Palette.textSoft }
                    Chip {
                        text: speed.claude ? speed.claude.chip : ""
                        symbol: "lock.fill"
                        tip: speed.claude ? speed.claude.tip : ""
                    }
                }
            }
        }

        // Who is using the computer.
        Panel {
            objectName: "who"
            width: parent.width
            implicitHeight: who.implicitHeight + 2 * Metrics.pad
            ColumnLayout {
                id: who
                anchors.fill: parent
                anchors.margins: Metrics.pad
                spacing: Metrics.gapTight
                RowLayout {
                    Layout.fillWidth: true
                    spacing: 6
                    UiText { text: "Who is using your computer"; font.pixelSize: Metrics.title; font.weight: Font.DemiBold }
                    InfoTip { text: speed.who.info || "" }
                    Item { Layout.fillWidth: true }
                    MiniTabs {
                        objectName: "whoMode"
                        items: ["Processor", "Memory"]
                        selection: root.model && root.model.whoMode === "memory" ? 1 : 0
                        onActivated: index => { if (root.model) root.model.whoMode = index === 1 ? "memory" : "cpu" }
                    }
                }
                UiText {
                    objectName: "whoTotal"
                    text: speed.who.total || ""
                    color: Palette.text2
                    font.pixelSize: Metrics.small
                    Layout.bottomMargin: 4
                }
                Repeater {
                    model: speed.rows
                    delegate: WhoRow {
                        required property var model
                        Layout.fillWidth: true
                        row: model
                        extent: speed.who.scale || 1
                    }
                }
            }
        }

        // What this tab never does.
        RowLayout {
            width: parent.width
            spacing: Metrics.gap
            Glyph { symbol: "checkmark.shield"; color: Palette.text3; size: 15 }
            Text {
                Layout.fillWidth: true
                wrapMode: Text.WordWrap
                textFormat: Text.StyledText
                color: Palette.text3
                font.pixelSize: Metrics.small
                text: "<b>Real fixes only. </b>Sorrelin never \u201Ccleans\u201D or \u201Cpurges\u201D memory. The system already uses free memory well, and emptying it makes the next minutes slower."
            }
        }
    }
}
