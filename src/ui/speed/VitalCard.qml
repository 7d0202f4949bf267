import Sorrelin
import QtQuick
import QtQuick.Layouts

// One of the four vital cards: a labelled figure with its unit, a line under it, and two slots
// the card fills: `accessory` beside the label and `bar` under the figure.
Panel {
    id: root
    property string symbol: ""
    property color tint: Palette.text2
    property string label: ""
    property string info: ""
    property string value: ""
    property color valueColor: Palette.text
    property string unit: ""
    property string sub: ""
    property alias accessory: accessorySlot.data
    property alias bar: barSlot.data

    implicitHeight: body.implicitHeight + 2 * Metrics.pad
    Accessible.role: Accessible.Grouping
    Accessible.name: label + ": " + value + " " + unit

    ColumnLayout {
        id: body
        anchors.fill: parent
        anchors.margins: Metrics.pad
        spacing: Metrics.gap

        RowLayout {
            Layout.fillWidth: true
            // as tall as a pill, so the labels line up whether a card has one or not
            Layout.minimumHeight: 26
            spacing: 6
            Glyph { symbol: root.symbol; color: root.tint; size: 15 }
            UiText {
                text: root.label
                color: Palette.text2
                font.pixelSize: Metrics.small
                font.weight: Font.DemiBold
            }
            InfoTip { text: root.info; visible: root.info !== ""; size: 13 }
            Item { Layout.fillWidth: true }
            Row { id: accessorySlot; spacing: 4 }
        }
        Row {
            spacing: 6
            UiText {
                id: figure
                objectName: "value"
                text: root.value
                color: root.valueColor
                font.pixelSize: Metrics.display
                font.weight: Font.Bold
            }
            UiText {
                anchors.baseline: figure.baseline
                text: root.unit
                color: Palette.text3
                font.pixelSize: Metrics.emphasis
            }
        }
        Item {
            id: barSlot
            Layout.fillWidth: true
            implicitHeight: 6
        }
        UiText {
            Layout.fillWidth: true
            objectName: "sub"
            text: root.sub
            color: Palette.text3
            font.pixelSize: Metrics.small
        }
    }
}
