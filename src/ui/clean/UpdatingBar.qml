import Sorrelin
import QtQuick
import QtQuick.Layouts

// A rescan running over the results on screen: how far it got, and that what is ticked can
// still be cleared meanwhile.
Panel {
    id: root
    readonly property AppModel model: App.model

    objectName: "updatingBar"
    implicitHeight: 60
    RowLayout {
        anchors { fill: parent; leftMargin: Metrics.pad; rightMargin: Metrics.pad }
        spacing: Metrics.gapWide
        ProgressRing {
            fraction: root.model && typeof root.model.scanFraction === "number" ? root.model.scanFraction : undefined
            size: 26
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2
            UiText { text: "Updating sizes"; font.weight: Font.DemiBold }
            UiText {
                objectName: "updatingLine"
                Layout.fillWidth: true
                text: CleanWords.updating(root.model ? root.model.scanProgress : null) + ". You can still clear what is ticked"
                color: Palette.text3
                font.pixelSize: Metrics.small
            }
        }
        SecondaryButton {
            text: "Stop"
            tip: "Stop scanning"
            onClicked: root.model.cancelScan()
        }
    }
}
