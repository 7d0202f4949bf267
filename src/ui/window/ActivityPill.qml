import Sorrelin
import QtQuick

// What runs now: a clean ("Cleaning 3 of 12") or a scan with its share and a stop control.
// Nothing shows while nothing runs.
Row {
    id: root
    readonly property AppModel model: App.model
    readonly property var state: model ? WindowWords.pill(model.cleanProgress, model.scanProgress, model.scanFraction)
                                       : WindowWords.pill(null, null, null)

    objectName: "activityPill"
    visible: state.kind !== ""
    spacing: 2

    StatusPill {
        objectName: "pillText"
        anchors.verticalCenter: parent.verticalCenter
        text: root.state.text
        style: root.state.kind === "clean" ? "warn" : "plain"
        live: true
        fraction: root.state.fraction === null ? undefined : root.state.fraction
    }
    IconButton {
        objectName: "pillStop"
        anchors.verticalCenter: parent.verticalCenter
        visible: root.state.stop
        size: 26
        symbol: "xmark"
        tip: root.state.tip
        onClicked: root.model.cancelScan()
    }
}
