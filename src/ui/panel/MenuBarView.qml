import Sorrelin
import QtQuick
import QtQuick.Layouts

// A stand-in for the tray's panel until its sections land: the disk, a scan, the window and
// the way out. It holds no logic: everything it shows and does is the model's.
Rectangle {
    id: root
    color: Palette.panel
    border.color: Palette.panelStroke
    border.width: 1
    radius: Metrics.radiusLarge
    implicitWidth: 320
    implicitHeight: column.implicitHeight + 2 * Metrics.pad

    ColumnLayout {
        id: column
        anchors { fill: parent; margins: Metrics.pad }
        spacing: Metrics.gapWide
        UiText {
            Layout.fillWidth: true
            text: Fmt.bytes(App.model.disk.available) + " free" + (App.model.isScanning ? ", scanning" : "")
            font.pixelSize: Metrics.title
            font.weight: Font.DemiBold
            color: App.model.isLow ? Palette.amberText : Palette.text
        }
        SecondaryButton {
            Layout.fillWidth: true
            text: "Scan"
            enabled: !App.model.isScanning
            onClicked: App.model.scan()
        }
        PrimaryButton {
            Layout.fillWidth: true
            text: "Open Sorrelin"
            onClicked: App.model.showWindow(-1)
        }
        SecondaryButton {
            Layout.fillWidth: true
            text: "Quit"
            onClicked: Desktop.quit()
        }
    }
}
