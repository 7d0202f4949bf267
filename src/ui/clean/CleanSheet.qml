import Sorrelin
import QtQuick
import QtQuick.Layouts

// A clean on its sheet: each item as it goes while it runs, then what it gave back, with the
// Trash to empty and what could not be cleared.
Panel {
    id: root
    readonly property AppModel model: App.model
    readonly property bool running: model !== null && !!model.cleanProgress
    readonly property var work: running ? CleanWords.running(model.cleanProgress, model.cleanItems) : ({ rows: [] })
    readonly property var result: model && !!model.cleanSummary
                                  ? CleanWords.done(model.cleanSummary, model.cleanItems, model.emptyingTrash) : ({})
    // Long lists scroll inside the sheet rather than push it off the window.
    property real maxHeight: 600

    objectName: "cleanSheet"
    width: 480
    height: Math.min(maxHeight, body.implicitHeight + 2 * Metrics.padWide)
    color: Palette.panel
    border.color: Palette.panelStrokeHover

    ColumnLayout {
        id: body
        anchors { fill: parent; margins: Metrics.padWide }
        spacing: Metrics.pad

        // CleanRunning.
        ColumnLayout {
            visible: root.running
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: Metrics.gapWide
            RowLayout {
                spacing: Metrics.gapWide
                ProgressRing {
                    size: 40
                    lineWidth: 4
                    fraction: root.running ? Math.min(1, root.model.cleanProgress.done / Math.max(1, root.model.cleanProgress.total)) : 0
                }
                ColumnLayout {
                    Layout.fillWidth: true
                    spacing: 3
                    UiText { objectName: "runningHeadline"; text: root.work.headline || ""; font.pixelSize: Metrics.title + 2; font.weight: Font.DemiBold }
                    UiText {
                        objectName: "runningLine"
                        Layout.fillWidth: true
                        text: root.work.line || ""
                        color: Palette.text2
                        elide: Text.ElideMiddle
                    }
                }
            }
            Flickable {
                id: list
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.preferredHeight: rows.implicitHeight
                Layout.minimumHeight: Math.min(rows.implicitHeight, 120)
                contentHeight: rows.implicitHeight
                clip: true
                boundsBehavior: Flickable.StopAtBounds
                interactive: contentHeight > height
                Column {
                    id: rows
                    width: list.width
                    Repeater {
                        model: root.work.rows
                        delegate: RowLayout {
                            required property var modelData
                            width: rows.width
                            height: 30
                            spacing: Metrics.gap
                            Item {
                                implicitWidth: 16
                                implicitHeight: 16
                                Spinner { anchors.centerIn: parent; visible: modelData.state === "working"; size: 13; color: Palette.amber }
                                Glyph { anchors.centerIn: parent; visible: modelData.state === "done"; symbol: "checkmark"; size: 14; color: Palette.green }
                                Glyph { anchors.centerIn: parent; visible: modelData.state === "trash"; symbol: "trash"; size: 13; color: Palette.purpleText }
                                Rectangle { anchors.centerIn: parent; visible: modelData.state === "waiting"; width: 6; height: 6; radius: 3; color: Palette.dim }
                            }
                            UiText {
                                Layout.fillWidth: true
                                text: modelData.name
                                color: modelData.state === "waiting" ? Palette.text3 : Palette.text
                            }
                            UiText {
                                visible: modelData.state === "trash"
                                text: "to Trash"
                                color: Palette.purpleText
                                font.pixelSize: Metrics.small
                            }
                            UiText { text: modelData.size; color: Palette.text2; font.pixelSize: Metrics.small }
                        }
                    }
                }
            }
            Row {
                spacing: Metrics.gap
                Glyph { anchors.verticalCenter: parent.verticalCenter; symbol: "lock.shield"; size: 14; color: Palette.text3 }
                UiText {
                    anchors.verticalCenter: parent.verticalCenter
                    text: "Nothing in use is touched. Items for the Trash can be put back."
                    color: Palette.text3
                    font.pixelSize: Metrics.small
                }
            }
        }

        // CleanDone.
        ColumnLayout {
            visible: !root.running && root.result.headline !== undefined
            Layout.fillWidth: true
            spacing: Metrics.gapWide
            RowLayout {
                spacing: Metrics.gapWide
                Rectangle {
                    Layout.alignment: Qt.AlignTop
                    width: 44
                    height: 44
                    radius: 22
                    color: Qt.rgba(0.25, 0.83, 0.55, 0.14)
                    DrawnCheck { anchors.centerIn: parent; size: 22; drawn: !root.running }
                    SparkleBurst { id: sparkle; anchors.centerIn: parent }
                }
                ColumnLayout {
                    Layout.fillWidth: true
                    spacing: 4
                    CountingBytes {
                        objectName: "doneHeadline"
                        prefix: "Freed "
                        value: root.result.freed || 0
                        font.pixelSize: Metrics.heading
                        font.weight: Font.Bold
                    }
                    UiText {
                        objectName: "doneLine"
                        Layout.fillWidth: true
                        text: root.result.subline || ""
                        color: Palette.text2
                        wrapMode: Text.Wrap
                        elide: Text.ElideNone
                    }
                }
            }
            ColumnLayout {
                visible: (root.result.failed || "") !== ""
                Layout.fillWidth: true
                spacing: 3
                Row {
                    spacing: 6
                    Glyph { anchors.verticalCenter: parent.verticalCenter; symbol: "exclamationmark.triangle.fill"; color: Palette.orange; size: 13 }
                    UiText { objectName: "doneFailed"; text: root.result.failed || ""; color: Palette.orangeText; font.weight: Font.Medium }
                }
                Repeater {
                    model: (root.result.failures || []).slice(0, 5)
                    delegate: UiText {
                        required property string modelData
                        Layout.fillWidth: true
                        text: modelData
                        color: Palette.text3
                        font.pixelSize: Metrics.small
                        elide: Text.ElideMiddle
                    }
                }
            }
            RowLayout {
                Layout.fillWidth: true
                spacing: Metrics.gap
                SecondaryButton {
                    objectName: "emptyTrash"
                    visible: (root.result.trashed || 0) > 0
                    text: root.result.emptyLabel || ""
                    symbol: "trash"
                    busy: root.model !== null && root.model.emptyingTrash
                    enabled: root.model !== null && !root.model.emptyingTrash
                    onClicked: root.model.emptyTrash()
                }
                Item { Layout.fillWidth: true }
                PrimaryButton {
                    objectName: "doneButton"
                    text: "Done"
                    onClicked: {
                        // The sheet told the whole story; no banner repeats it.
                        root.model.dismissSummary();
                        root.model.dismissReport();
                    }
                }
            }
        }
    }
    onRunningChanged: if (!running) sparkle.burst()
}
