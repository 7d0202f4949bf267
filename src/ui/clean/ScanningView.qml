import Sorrelin
import QtQuick
import QtQuick.Layouts

// The very first scan: what it looks through now, and what it found so far.
Panel {
    id: root
    readonly property AppModel model: App.model
    readonly property var progress: model ? model.scanProgress : null

    objectName: "scanningView"
    implicitHeight: body.implicitHeight + 2 * Metrics.pad
    RowLayout {
        id: body
        anchors { fill: parent; margins: Metrics.pad; leftMargin: Metrics.padWide }
        spacing: Metrics.padWide
        IconTile { symbol: "custom.broom"; tint: Palette.amber; size: 44; Layout.alignment: Qt.AlignTop }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 6
            UiText { text: "Looking for space you can free"; font.pixelSize: Metrics.title; font.weight: Font.DemiBold }
            UiText {
                Layout.fillWidth: true
                visible: text !== ""
                text: CleanWords.scanning(root.progress)
                color: Palette.text2
                elide: Text.ElideMiddle
            }
            ScanSteps { Layout.fillWidth: true; progress: root.progress }
        }
        ColumnLayout {
            Layout.alignment: Qt.AlignTop
            spacing: 0
            UiText {
                Layout.alignment: Qt.AlignRight
                text: Fmt.bytes(root.progress ? root.progress.found : 0)
                font.pixelSize: Metrics.heading
                font.weight: Font.DemiBold
            }
            UiText { Layout.alignment: Qt.AlignRight; text: "found so far"; color: Palette.text3; font.pixelSize: Metrics.small }
        }
    }
}
