import Sorrelin
import QtQuick
import QtQuick.Layouts

// How long the free space lasts: learning the pace, not filling up, or the day the disk fills,
// over a strip of the next 30 days.
Panel {
    id: root
    property WeekState week

    // A full day: red stripes across the dark tone, clipped by the item they fill.
    component Stripes: Item {
        anchors.fill: parent
        clip: true
        Repeater {
            model: Math.ceil((parent.width + parent.height) / 6)
            delegate: Rectangle {
                required property int index
                x: index * 6 - parent.height / 2
                y: -parent.height / 2
                width: 2
                height: parent.height * 2
                rotation: 45
                color: Palette.named("red", 0.55)
            }
        }
    }

    implicitHeight: body.implicitHeight + 2 * Metrics.pad + 4
    readonly property var runway: week ? week.runway : ({})

    ColumnLayout {
        id: body
        anchors.fill: parent
        anchors.margins: Metrics.pad + 2
        spacing: Metrics.gap

        RowLayout {
            spacing: 8
            Glyph { symbol: root.runway.symbol || ""; color: Palette.named(root.runway.tint || "text2"); size: 17 }
            UiText {
                objectName: "headline"
                text: root.runway.headline || ""
                font.pixelSize: Metrics.emphasis
                font.weight: Font.DemiBold
            }
        }
        RowLayout {
            spacing: Metrics.gapWide
            UiText {
                objectName: "big"
                text: root.runway.big || ""
                color: root.runway.state === "filling" ? Palette.named(root.runway.tint) : Palette.text
                font.pixelSize: Metrics.display
                font.weight: Font.Bold
            }
            UiText {
                objectName: "line"
                Layout.alignment: Qt.AlignBottom
                Layout.bottomMargin: 5
                Layout.fillWidth: root.runway.state !== "filling"
                text: root.runway.line || ""
                color: Palette.text2
                wrapMode: Text.WordWrap
                elide: Text.ElideNone
            }
            InfoTip {
                Layout.alignment: Qt.AlignBottom
                Layout.bottomMargin: 7
                visible: (root.runway.tip || "") !== ""
                text: root.runway.tip || ""
            }
            Item { Layout.fillWidth: root.runway.state === "filling" }
            Chip {
                objectName: "moved"
                Layout.alignment: Qt.AlignBottom
                Layout.bottomMargin: 5
                visible: (root.runway.chip || "") !== ""
                text: root.runway.chip || ""
                symbol: "checkmark"
                style: "ok"
            }
        }

        // The next 30 days.
        Row {
            id: strip
            objectName: "strip"
            Layout.fillWidth: true
            Layout.topMargin: 6
            spacing: 3
            readonly property real cellWidth: (width - spacing * 29) / 30
            Repeater {
                model: root.week ? root.week.cells : []
                delegate: Rectangle {
                    id: cell
                    required property var modelData
                    required property int index
                    objectName: "cell-" + index
                    width: strip.cellWidth
                    height: 26
                    radius: 4
                    color: modelData.hatched ? "#3A2226" : Palette.named(modelData.tint)
                    opacity: modelData.hatched ? 1 : Math.max(0, Math.min(1, modelData.opacity))
                    clip: true
                    Stripes { visible: cell.modelData.hatched }
                    HoverHandler { id: hover }
                    Tip { text: cell.modelData.tip; shown: hover.hovered }
                    Accessible.role: Accessible.StaticText
                    Accessible.name: modelData.tip
                }
            }
        }
        RowLayout {
            Layout.fillWidth: true
            UiText { text: "Today"; color: Palette.text3; font.pixelSize: Metrics.caption }
            Item { Layout.fillWidth: true }
            UiText { text: root.week ? root.week.lastCell : ""; color: Palette.text3; font.pixelSize: Metrics.caption }
        }
        RowLayout {
            spacing: Metrics.gap
            Layout.topMargin: 2
            Tag { text: "More than 10 GB free"; fg: Palette.greenText; bg: Palette.named("green", 0.14) }
            Tag { text: "Under 10 GB"; fg: Palette.amberText; bg: Palette.named("amber", 0.14) }
            Tag { text: "Under 5 GB"; fg: Palette.red; bg: Palette.named("red", 0.14) }
            Rectangle {
                // a tag for the strip's full day, with a swatch of its stripes
                implicitWidth: fullRow.implicitWidth + 12
                implicitHeight: 20
                radius: 5
                color: "#3A2226"
                Accessible.role: Accessible.StaticText
                Accessible.name: "Full"
                Row {
                    id: fullRow
                    x: 6
                    anchors.verticalCenter: parent.verticalCenter
                    spacing: 5
                    Rectangle {
                        anchors.verticalCenter: parent.verticalCenter
                        width: 10
                        height: 10
                        radius: 2
                        color: "transparent"
                        border.width: 1
                        border.color: Palette.named("red", 0.55)
                        Stripes {}
                    }
                    UiText { text: "Full"; color: Palette.red; font.pixelSize: Metrics.caption; font.weight: Font.DemiBold }
                }
            }
        }
    }
}
