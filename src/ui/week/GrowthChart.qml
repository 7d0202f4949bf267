import Sorrelin
import QtQuick
import QtQuick.Layouts

// New files each day over the last 14 days, stacked by kind; a click on a day picks it for the
// day panel, and a click on the picked day lets it go.
Panel {
    id: root
    property WeekState week
    readonly property bool running: App.model ? App.model.growthRunning : false

    implicitHeight: 280
    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Metrics.pad
        spacing: Metrics.gap
        RowLayout {
            spacing: 6
            UiText { text: "New files each day"; font.pixelSize: Metrics.title; font.weight: Font.DemiBold }
            InfoTip { text: "Files created that day that are still on disk. Packages linked from a shared store keep their old dates, so those installs show up smaller. Click a day for details." }
            Spinner { visible: root.running; size: 14 }
        }
        Item {
            id: plot
            Layout.fillWidth: true
            Layout.fillHeight: true
            readonly property real axis: 52
            readonly property real labels: 20
            readonly property real barsHeight: height - labels

            // Grid lines at quarters of the scale, with their labels.
            Repeater {
                model: root.week ? root.week.grid : []
                delegate: Item {
                    required property var modelData
                    x: 0
                    width: plot.width
                    y: plot.barsHeight * (1 - modelData.fraction)
                    height: 1
                    Rectangle { x: plot.axis; width: parent.width - plot.axis; height: 1; color: Palette.line }
                    UiText {
                        anchors.verticalCenter: parent.verticalCenter
                        width: plot.axis - 8
                        horizontalAlignment: Text.AlignRight
                        text: parent.modelData.label
                        color: Palette.text4
                        font.pixelSize: Metrics.caption
                    }
                }
            }
            Rectangle { x: plot.axis; y: plot.barsHeight; width: plot.width - plot.axis; height: 1; color: Palette.panelStroke }

            Row {
                id: bars
                x: plot.axis + 6
                width: plot.width - plot.axis - 6
                height: plot.height
                spacing: 6
                readonly property int n: root.week ? root.week.bars.length : 0
                readonly property real barWidth: n > 0 ? (width - spacing * (n - 1)) / n : 0
                Repeater {
                    model: root.week ? root.week.bars : []
                    delegate: Item {
                        id: bar
                        required property var modelData
                        required property int index
                        objectName: "day-" + index
                        width: bars.barWidth
                        height: bars.height
                        Accessible.role: Accessible.Button
                        Accessible.name: modelData.accessible
                        Accessible.onPressAction: root.week.pick(index)

                        Rectangle {
                            // the picked day stands out; others brighten under the pointer
                            x: -3
                            width: parent.width + 6
                            height: plot.barsHeight + 2
                            radius: 5
                            color: bar.modelData.selected ? Palette.named("amber", 0.10) : hover.hovered ? Palette.hover : "transparent"
                            border.width: bar.modelData.selected ? 1 : 0
                            border.color: Palette.named("amber", 0.35)
                        }
                        Column {
                            anchors.bottom: parent.bottom
                            anchors.bottomMargin: plot.labels
                            width: parent.width
                            Repeater {
                                // top of the bar first
                                model: bar.modelData.segments.slice().reverse()
                                delegate: Rectangle {
                                    required property var modelData
                                    width: bar.width
                                    height: Math.max(1, plot.barsHeight * modelData.value)
                                    color: Palette.named(modelData.tint)
                                    opacity: bar.modelData.selected || !root.week || root.week.bars.every(b => !b.selected) ? 0.9 : 0.45
                                }
                            }
                        }
                        UiText {
                            anchors.bottom: parent.bottom
                            anchors.horizontalCenter: parent.horizontalCenter
                            width: parent.width + 8
                            horizontalAlignment: Text.AlignHCenter
                            elide: Text.ElideNone
                            text: bar.modelData.label
                            color: bar.modelData.selected || bar.modelData.today ? Palette.text : Palette.text4
                            font.pixelSize: Metrics.caption
                            font.weight: bar.modelData.selected ? Font.DemiBold : Font.Normal
                        }
                        HoverHandler { id: hover }
                        TapHandler { onTapped: root.week.pick(bar.index) }
                        Tip { text: bar.modelData.tip; shown: hover.hovered; edge: "top" }
                    }
                }
            }
        }
    }
}
