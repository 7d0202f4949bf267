import Sorrelin
import QtQuick

// Sends a storage row to the Trash in two clicks: the first arms "trash:{path}" in the model,
// the second within the armed time moves it. Busy while the model is moving it.
SecondaryButton {
    id: root
    property string path: ""
    property string name: ""
    property real bytes: 0

    readonly property bool isArmed: App.model !== null && App.model.armed === "trash:" + path
    objectName: "trash"
    armed: isArmed
    busy: App.model !== null && App.model.trashing.indexOf(path) >= 0
    enabled: !busy
    symbol: "trash"
    text: isArmed ? "Move to Trash?" : ""
    implicitHeight: 26
    implicitWidth: isArmed ? implicitContentWidth + leftPadding + rightPadding : 26
    leftPadding: isArmed ? 10 : 0
    rightPadding: isArmed ? 10 : 0
    fontSize: Metrics.small
    tone: isArmed ? "plain" : "warn"
    tip: isArmed ? (name !== "" ? "Click again to move " + name + " to the Trash" : "Click again to move it to the Trash")
                 : "Move " + name + " to the Trash"
    Accessible.name: tip
    onClicked: App.model.armTrash(path, name, bytes)
}
