import Sorrelin
import QtQuick
import QtQuick.Layouts

// The tab's title, the disk it covers, and on the right the walk: running with a way to stop
// it, or when it last ran with a way to run it again.
RowLayout {
    id: root
    readonly property var model: App.model
    readonly property bool busy: model ? model.storageBusy : false
    readonly property var report: model ? model.storageShown : null

    spacing: Metrics.gapWide

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 2
        UiText {
            text: "Storage"
            font.pixelSize: Metrics.heading
            font.weight: Font.DemiBold
        }
        UiText {
            objectName: "subtitle"
            Layout.fillWidth: true
            text: "Everything on " + (root.model ? root.model.disk.name : "your disk") + ", by where it lives."
            color: Palette.text3
        }
    }
    RowLayout {
        visible: root.busy
        spacing: Metrics.gap
        Spinner { size: 14 }
        UiText {
            objectName: "measuring"
            text: "Measuring " + Fmt.grouped(root.report ? root.report.files : 0) + " files"
            color: Palette.text2
        }
        SecondaryButton {
            objectName: "stop"
            text: "Stop"
            symbol: "stop.fill"
            onClicked: root.model.stopStorage()
        }
    }
    RowLayout {
        visible: !root.busy && !!root.report
        spacing: Metrics.gap
        UiText {
            objectName: "measured"
            text: root.report ? "Measured " + Fmt.ago(root.report.made) : ""
            color: Palette.text3
        }
        IconButton {
            objectName: "remeasure"
            symbol: "arrow.clockwise"
            tip: "Walks your whole home folder and your apps again. Takes a minute or two, in the background."
            onClicked: root.model.measureStorage()
        }
    }
}
