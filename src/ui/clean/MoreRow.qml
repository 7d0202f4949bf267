import Sorrelin
import QtQuick
import QtQuick.Layouts

// The rows a tier keeps folded: how many, how much of them is ticked and their size.
Item {
    id: root
    property var words: ({})
    signal clicked()

    objectName: "moreRow"
    height: 44
    Accessible.role: Accessible.Button
    Accessible.name: words.title || ""
    Accessible.onPressAction: clicked()

    HoverWash { anchors.fill: parent; hovered: hover.hovered }
    Rectangle { anchors { left: parent.left; right: parent.right; top: parent.top; leftMargin: Metrics.pad; rightMargin: Metrics.pad } height: 1; color: Palette.line }
    RowLayout {
        anchors { fill: parent; leftMargin: Metrics.pad; rightMargin: Metrics.pad }
        spacing: Metrics.gap
        Glyph { symbol: "chevron.down"; size: 15; color: Palette.text2 }
        UiText { objectName: "moreTitle"; text: root.words.title || ""; font.weight: Font.Medium }
        UiText {
            objectName: "moreLine"
            Layout.fillWidth: true
            text: root.words.line || ""
            color: Palette.text3
            font.pixelSize: Metrics.small
        }
        UiText { objectName: "moreSize"; text: root.words.size || ""; color: Palette.text2 }
    }
    HoverHandler { id: hover; cursorShape: Qt.PointingHandCursor }
    TapHandler { onTapped: root.clicked() }
}
