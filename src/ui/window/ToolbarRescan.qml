import Sorrelin
import QtQuick

// Scans again, or stops the scan that runs and keeps the last results.
IconButton {
    id: root
    readonly property AppModel model: App.model
    readonly property bool scanning: model ? model.isScanning : false

    objectName: "rescan"
    size: 32
    symbol: scanning ? "stop.fill" : "arrow.counterclockwise"
    text: WindowWords.rescanLabel(scanning)
    Accessible.name: text
    enabled: model !== null && !model.isCleaning
    tip: model ? WindowWords.rescanTip(model.isCleaning, scanning, model.lastScanSeconds) : ""
    onClicked: scanning ? model.cancelScan() : model.scan()
}
