import Sorrelin
import QtQuick
import QtQuick.Layouts

// How long the free space will last, and where it went in the last 14 days.
Item {
    id: root
    readonly property AppModel model: App.model

    WeekState { id: week; model: root.model }

    ScrollPage {
        anchors.fill: parent

        PageHeading {
            width: parent.width
            title: "This week"
            subtitle: "Where your space went, and how long the rest will last."
        }

        RunwayPanel {
            objectName: "runway"
            width: parent.width
            week: week
        }

        // Measuring, or never measured.
        Panel {
            objectName: "growthEmpty"
            visible: week.growthState !== "report"
            width: parent.width
            implicitHeight: 120
            ColumnLayout {
                anchors.centerIn: parent
                spacing: Metrics.gapWide
                RowLayout {
                    Layout.alignment: Qt.AlignHCenter
                    spacing: Metrics.gap
                    Spinner { visible: week.growthState === "running"; size: 16 }
                    UiText {
                        text: week.growthState === "running"
                              ? "Measuring the files made in the last 14 days. This takes a minute or two, in the background."
                              : "Sorrelin has not measured the last 14 days yet."
                        color: Palette.text2
                    }
                }
                PrimaryButton {
                    objectName: "measureNow"
                    Layout.alignment: Qt.AlignHCenter
                    visible: week.growthState === "none"
                    text: "Measure now"
                    onClicked: if (root.model) root.model.refreshGrowth()
                }
            }
        }

        GrowthChart {
            objectName: "chart"
            visible: week.growthState === "report"
            width: parent.width
            week: week
        }

        RowLayout {
            visible: week.growthState === "report"
            width: parent.width
            spacing: Metrics.gapWide

            Panel {
                objectName: "dayPanel"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                Layout.alignment: Qt.AlignTop
                implicitHeight: dayColumn.implicitHeight + 2 * Metrics.pad
                ColumnLayout {
                    id: dayColumn
                    anchors.fill: parent
                    anchors.margins: Metrics.pad
                    spacing: Metrics.gapTight
                    RowLayout {
                        Layout.fillWidth: true
                        Layout.bottomMargin: 4
                        UiText { objectName: "dayTitle"; text: week.day.title || ""; font.pixelSize: Metrics.emphasis; font.weight: Font.DemiBold }
                        Item { Layout.fillWidth: true }
                        UiText { text: week.day.total || ""; color: Palette.text2 }
                    }
                    Repeater {
                        model: week.day.rows || []
                        delegate: PlaceRow { required property var modelData; Layout.fillWidth: true; place: modelData }
                    }
                    UiText {
                        visible: (week.day.rows || []).length === 0
                        text: "Nothing new that day."
                        color: Palette.text3
                        Layout.topMargin: 4
                    }
                }
            }
            Panel {
                objectName: "biggestPanel"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                Layout.alignment: Qt.AlignTop
                implicitHeight: bigColumn.implicitHeight + 2 * Metrics.pad
                ColumnLayout {
                    id: bigColumn
                    anchors.fill: parent
                    anchors.margins: Metrics.pad
                    spacing: Metrics.gapTight
                    RowLayout {
                        Layout.fillWidth: true
                        Layout.bottomMargin: 4
                        UiText { text: "Biggest additions in 14 days"; font.pixelSize: Metrics.emphasis; font.weight: Font.DemiBold }
                        Item { Layout.fillWidth: true }
                        UiText { text: week.biggest.total || ""; color: Palette.text2 }
                    }
                    Repeater {
                        model: week.biggest.rows || []
                        delegate: PlaceRow { required property var modelData; Layout.fillWidth: true; place: modelData }
                    }
                }
            }
        }
    }
}
