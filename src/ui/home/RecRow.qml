import Sorrelin
import QtQuick
import QtQuick.Layouts

// One piece of advice in a list: its icon, title and why, the reason chip and its button.
Item {
    id: root
    readonly property AppModel model: App.model
    // The delegate's roles.
    property var rec: null
    property bool first: false
    readonly property var words: rec ? {
        "id": rec.id, "state": rec.state, "armed": rec.armed, "actionLabel": rec.shortLabel,
        "shortLabel": rec.shortLabel, "busyLabel": rec.busyLabel, "doneLabel": rec.doneLabel
    } : ({})
    readonly property var button: HomeWords.action(words)
    readonly property bool snoozed: rec !== null && rec.reason === "snoozed"

    objectName: "rec-" + (rec ? rec.id : "")
    height: 64
    transform: FailShake { recId: root.rec ? root.rec.id : ""; failedRec: root.model ? root.model.failedRec : "" }

    HoverWash { anchors.fill: parent; hovered: hover.hovered }
    Rectangle {
        visible: !root.first
        anchors { left: parent.left; right: parent.right; top: parent.top; leftMargin: Metrics.pad; rightMargin: Metrics.pad }
        height: 1
        color: Palette.line
    }
    RowLayout {
        anchors { fill: parent; leftMargin: Metrics.pad; rightMargin: Metrics.pad }
        spacing: Metrics.gapWide
        Item {
            implicitWidth: 34
            implicitHeight: 34
            ItemIcon {
                anchors.fill: parent
                symbol: root.rec ? root.rec.symbol : ""
                tint: Palette.named(root.rec ? root.rec.tint : "")
                appPath: root.rec && root.rec.appPath ? root.rec.appPath : ""
                size: 34
                opacity: root.snoozed ? 0.6 : 1
            }
            Glyph { visible: root.snoozed; anchors { right: parent.right; bottom: parent.bottom; margins: -3 } symbol: "clock"; size: 13; color: Palette.text2 }
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2
            UiText {
                Layout.fillWidth: true
                text: root.rec ? root.rec.title : ""
                font.weight: Font.Medium
            }
            UiText {
                Layout.fillWidth: true
                text: root.button.done ? "Done. " + root.rec.doneChip + "." : (root.rec ? root.rec.why : "")
                color: root.button.done ? Palette.greenText : Palette.text3
                font.pixelSize: Metrics.small
            }
        }
        ReasonTag { reason: root.rec ? root.rec.reason : "" }
        SecondaryButton {
            objectName: "recAction"
            text: root.button.text || ""
            busy: root.button.busy === true
            armed: root.rec !== null && root.rec.armed === true
            enabled: !root.button.busy && !root.button.done && root.rec.state !== "queued"
            symbol: root.button.done ? "checkmark" : ""
            onClicked: root.model.run(root.rec.id)
        }
    }
    HoverHandler { id: hover }
}
