import Sorrelin
import QtQuick
import QtQuick.Layouts

// A tier in the header: its title, the size of all its items and how much of it is ticked.
// Clicking it ticks or unticks the whole tier.
Rectangle {
    id: root
    readonly property AppModel model: App.model
    property int tier: 0
    property bool firstScan: false
    readonly property var words: {
        if (!model) return CleanWords.tier(tier, null, firstScan);
        model.selected; model.items.count;
        return CleanWords.tier(tier, model.itemsIn(tier), firstScan);
    }
    readonly property color tint: Palette.named(words.colour)

    objectName: "tierTile" + tier
    implicitHeight: 66
    radius: Metrics.radius + 1
    color: hover.hovered ? Qt.rgba(tint.r, tint.g, tint.b, 0.10) : Palette.sunken
    border.width: 1
    border.color: hover.hovered ? Qt.rgba(tint.r, tint.g, tint.b, 0.40) : Palette.line
    Behavior on color { ColorAnimation { duration: Motion.hover.duration } }
    Accessible.role: Accessible.Button
    Accessible.name: words.a11y
    Accessible.onPressAction: toggle()

    function toggle() {
        if (model && words.open > 0) model.setAll(tier, !words.allTicked);
    }

    ColumnLayout {
        anchors { fill: parent; leftMargin: Metrics.gapWide; rightMargin: Metrics.gapWide; topMargin: 9; bottomMargin: 9 }
        spacing: 2
        RowLayout {
            Layout.fillWidth: true
            spacing: 6
            Rectangle { width: 8; height: 8; radius: 4; color: root.tint }
            UiText {
                Layout.fillWidth: true
                text: root.words.title
                color: Palette.text2
                font.pixelSize: Metrics.small
                font.weight: Font.Medium
            }
        }
        UiText {
            objectName: "tileTotal"
            Layout.fillWidth: true
            text: root.firstScan ? "…" : root.words.totalText
            font.pixelSize: Metrics.title
            font.weight: Font.DemiBold
        }
        UiText {
            objectName: "tileLine"
            Layout.fillWidth: true
            text: root.words.line
            color: root.words.allTicked ? Qt.lighter(root.tint, 1.15) : Palette.text3
            font.pixelSize: Metrics.caption
        }
    }
    HoverHandler { id: hover; cursorShape: Qt.PointingHandCursor }
    TapHandler { onTapped: root.toggle() }
}
