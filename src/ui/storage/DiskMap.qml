import Sorrelin
import QtQuick
import QtQuick.Layouts

// The whole disk as one bar: the categories, what the system keeps, swap and free, with a
// legend that names the largest. A click on a category's part opens it in the list below.
Panel {
    id: root
    property var slices: []
    signal openKind(string kind)

    readonly property var disk: App.model ? App.model.disk : ({})
    readonly property var legend: StorageView.legendOf(slices, Math.max(2, Math.floor(width / 150)))
    readonly property var hovered: {
        const id = bar.hoveredSegment;
        for (const s of slices) if (s.id === id) return s;
        return null;
    }

    objectName: "diskMap"
    implicitHeight: column.implicitHeight + 2 * Metrics.pad

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: Metrics.pad
        spacing: Metrics.gapWide

        RowLayout {
            Layout.fillWidth: true
            UiText {
                objectName: "used"
                text: Fmt.bytes(root.disk.used ?? 0) + " used of " + Fmt.bytes(root.disk.total ?? 0)
                font.pixelSize: Metrics.title
                font.weight: Font.DemiBold
            }
            Item { Layout.fillWidth: true }
            UiText {
                objectName: "free"
                text: Fmt.bytes(root.disk.available ?? 0) + " free"
                color: Palette.greenText
                font.pixelSize: Metrics.title
                font.weight: Font.DemiBold
            }
        }

        StackedBar {
            id: bar
            Layout.fillWidth: true
            lineWidth: 18
            segments: root.slices
            HoverHandler { cursorShape: root.hovered && root.hovered.kind ? Qt.PointingHandCursor : Qt.ArrowCursor }
            TapHandler {
                onTapped: if (root.hovered && root.hovered.kind) root.openKind(root.hovered.id)
            }
            Tip {
                text: root.hovered ? root.hovered.tip : ""
                shown: root.hovered !== null
            }
        }

        Flow {
            Layout.fillWidth: true
            spacing: Metrics.pad
            Repeater {
                model: root.legend.named
                Row {
                    required property var modelData
                    spacing: 6
                    Rectangle {
                        anchors.verticalCenter: parent.verticalCenter
                        width: 8
                        height: 8
                        radius: 4
                        color: Palette.named(modelData.color)
                    }
                    UiText {
                        text: modelData.legend
                        color: Palette.text2
                        font.pixelSize: Metrics.small
                    }
                    UiText {
                        text: Fmt.bytes(modelData.value)
                        color: Palette.text4
                        font.pixelSize: Metrics.small
                    }
                }
            }
            UiText {
                objectName: "legendRest"
                visible: root.legend.rest !== ""
                text: root.legend.rest
                color: Palette.text4
                font.pixelSize: Metrics.small
            }
        }
    }
}
