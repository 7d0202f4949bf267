import Sorrelin
import QtQuick

// Scans again, or stops the scan that runs and keeps the last results.
SecondaryButton {
    id: root
    readonly property AppModel model: App.model
    readonly property bool scanning: model ? model.isScanning : false

    objectName: "rescan"
    symbol: scanning ? "stop.fill" : "arrow.counterclockwise"
    text: WindowWords.rescanLabel(scanning)
    // Left enabled during a clean so its tip can say why it waits; the model starts no scan then.
    enabled: model !== null
    opacity: model && model.isCleaning ? 0.55 : 1
    tip: model ? WindowWords.rescanTip(model.isCleaning, scanning, model.lastScanSeconds) : ""
    onClicked: scanning ? model.cancelScan() : model.scan()
}
