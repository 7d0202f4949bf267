import Sorrelin
import QtQuick
import QtQuick.Layouts

// Before the first scan has finished: what Sorrelin is measuring, and how far it got.
Panel {
    id: root
    readonly property AppModel model: App.model

    objectName: "checkingCard"
    implicitHeight: body.implicitHeight + 2 * Metrics.padWide
    RowLayout {
        id: body
        anchors { fill: parent; margins: Metrics.padWide }
        spacing: Metrics.pad
        ProgressRing {
            Layout.alignment: Qt.AlignTop
            size: 40
            lineWidth: 4
            fraction: root.model && typeof root.model.scanFraction === "number" ? root.model.scanFraction : undefined
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 4
            UiText { text: "Checking your computer"; font.pixelSize: Metrics.title + 2; font.weight: Font.Bold }
            UiText {
                Layout.fillWidth: true
                text: "Sorrelin is measuring caches, build folders and downloads. Suggestions show up here when it is done."
                color: Palette.text2
                wrapMode: Text.Wrap
                elide: Text.ElideNone
            }
            UiText {
                objectName: "checkingLine"
                text: HomeWords.checking(root.model ? root.model.scanProgress : null)
                color: Palette.amberText
                font.pixelSize: Metrics.small
            }
        }
    }
}
