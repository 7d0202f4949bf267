import Sorrelin
import QtQuick
import QtQuick.Layouts

// The one insight over the cards: sibling apps that each carry their own copy of the same
// packages, what one shared workspace would keep instead, and how to set it up.
Panel {
    id: root
    property var insight: null
    readonly property bool open: App.model ? App.model.showHow : false

    implicitHeight: body.implicitHeight + 2 * Metrics.pad
    ColumnLayout {
        id: body
        anchors.fill: parent
        anchors.margins: Metrics.pad
        spacing: Metrics.gap
        RowLayout {
            Layout.fillWidth: true
            spacing: Metrics.gapWide
            IconTile { symbol: "shippingbox"; tint: Palette.blue; size: 32 }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: 2
                UiText {
                    objectName: "insightHeadline"
                    Layout.fillWidth: true
                    text: root.insight ? root.insight.headline : ""
                    font.pixelSize: Metrics.emphasis
                    font.weight: Font.DemiBold
                }
                UiText {
                    Layout.fillWidth: true
                    text: root.insight ? root.insight.text : ""
                    color: Palette.text2
                }
            }
            LinkButton {
                objectName: "showHow"
                text: root.open ? "Hide" : "Show how"
                onClicked: if (App.model) App.model.showHow = !root.open
            }
        }
        GridLayout {
            Layout.fillWidth: true
            Layout.leftMargin: 44
            columns: 3
            columnSpacing: Metrics.gapWide
            rowSpacing: 6
            UiText { text: "Today"; color: Palette.text2; font.pixelSize: Metrics.small; Layout.preferredWidth: 52 }
            Rectangle {
                Layout.fillWidth: true
                implicitHeight: 8
                radius: 4
                color: Palette.named("orange", 0.8)
            }
            UiText { text: root.insight ? root.insight.today : ""; font.weight: Font.DemiBold; Layout.preferredWidth: 70; horizontalAlignment: Text.AlignRight }
            UiText { text: "Shared"; color: Palette.text2; font.pixelSize: Metrics.small }
            Rectangle {
                Layout.fillWidth: true
                implicitHeight: 8
                radius: 4
                color: Palette.track
                Rectangle {
                    height: parent.height
                    radius: 4
                    width: parent.width * (root.insight ? Math.max(0.01, root.insight.sharedFraction) : 0)
                    color: Palette.green
                }
            }
            UiText { text: root.insight ? root.insight.shared : ""; font.weight: Font.DemiBold; color: Palette.greenText; Layout.preferredWidth: 70; horizontalAlignment: Text.AlignRight }
        }
        Text {
            objectName: "steps"
            visible: root.open
            Layout.fillWidth: true
            Layout.leftMargin: 44
            Layout.topMargin: 2
            text: root.insight ? root.insight.steps : ""
            wrapMode: Text.WordWrap
            color: Palette.textSoft
            font.pixelSize: Metrics.small
            lineHeight: 1.25
        }
    }
}
