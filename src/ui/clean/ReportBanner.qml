import Sorrelin
import QtQuick
import QtQuick.Layouts

// What a clean that ran outside the sheet gave back, with the Trash to empty and the failures.
Panel {
    id: root
    readonly property AppModel model: App.model
    readonly property var words: CleanWords.banner(model ? model.report : null, model ? model.emptyingTrash : false)

    objectName: "reportBanner"
    implicitHeight: body.implicitHeight + 2 * Metrics.pad
    color: Qt.rgba(0.25, 0.83, 0.55, 0.07)
    border.color: Qt.rgba(0.25, 0.83, 0.55, 0.28)

    RowLayout {
        id: body
        anchors { fill: parent; margins: Metrics.pad }
        spacing: Metrics.gapWide
        IconTile { symbol: "checkmark"; tint: Palette.green; size: 34; Layout.alignment: Qt.AlignTop }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 3
            UiText { objectName: "bannerHeadline"; text: root.words.headline; font.pixelSize: Metrics.title; font.weight: Font.DemiBold }
            UiText { objectName: "bannerLine"; Layout.fillWidth: true; text: root.words.line; color: Palette.text2 }
            Row {
                visible: root.words.failed !== ""
                spacing: 6
                Glyph { anchors.verticalCenter: parent.verticalCenter; symbol: "exclamationmark.triangle.fill"; color: Palette.orange; size: 13 }
                UiText { text: root.words.failed; color: Palette.orangeText; font.pixelSize: Metrics.small }
            }
            Repeater {
                model: root.words.failures.slice(0, 4)
                delegate: UiText {
                    required property string modelData
                    Layout.fillWidth: true
                    text: modelData
                    color: Palette.text3
                    font.pixelSize: Metrics.small
                }
            }
        }
        SecondaryButton {
            objectName: "bannerEmpty"
            Layout.alignment: Qt.AlignTop
            visible: root.words.trashed > 0
            text: root.words.empty
            busy: root.model !== null && root.model.emptyingTrash
            enabled: root.model !== null && !root.model.emptyingTrash
            onClicked: root.model.emptyTrash()
        }
        SecondaryButton {
            objectName: "bannerDismiss"
            Layout.alignment: Qt.AlignTop
            text: "Dismiss"
            onClicked: root.model.dismissReport()
        }
    }
}
