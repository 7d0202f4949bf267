import Sorrelin
import QtQuick
import QtQuick.Layouts

// One cause of slowness with its fix, from a piece of advice: the app's icon, what it is and
// why, the reason chip, what it holds, and the button that quits, relaunches, stops or
// restarts. A piece of advice that arms waits for a second press.
Item {
    id: root
    // The row of the list, with its roles by name.
    property var rec
    // How many leftover groups a stop ends.
    property int stopCount: 0

    implicitHeight: 58
    objectName: "cause-" + rec.id

    readonly property string buttonText: rec.state === "busy" ? rec.busyLabel
                                       : rec.state === "done" ? rec.doneLabel
                                       : rec.action === "stopLeftovers" && stopCount > 0 ? "Stop " + stopCount
                                       : rec.shortLabel
    transform: FailShake { recId: rec.id; failedRec: App.model ? App.model.failedRec : "" }

    HoverHandler { id: hover }
    Tip { text: rec.tip; shown: hover.hovered && !button.hovered }

    RowLayout {
        anchors.fill: parent
        spacing: Metrics.gapWide
        ItemIcon {
            symbol: rec.symbol
            tint: Palette.named(rec.tint)
            appPath: rec.appPath ? rec.appPath : ""
            size: 32
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 3
            RowLayout {
                spacing: Metrics.gap
                Layout.fillWidth: true
                UiText {
                    Layout.fillWidth: implicitWidth > width
                    Layout.maximumWidth: implicitWidth
                    text: rec.title
                    font.weight: Font.DemiBold
                }
                ReasonTag { reason: rec.reason }
                Item { Layout.fillWidth: true }
            }
            UiText {
                Layout.fillWidth: true
                text: rec.why
                color: Palette.text3
                font.pixelSize: Metrics.small
            }
        }
        UiText {
            objectName: "value"
            text: rec.impact === "memory" ? Fmt.bytes(rec.memory)
                : rec.impact === "cpu" ? Math.round(rec.cpuShare) + "%" : ""
            color: rec.impact === "memory" ? Palette.memText : Palette.textSoft
            font.weight: Font.DemiBold
            horizontalAlignment: Text.AlignRight
            Layout.minimumWidth: 64
        }
        SecondaryButton {
            id: button
            objectName: "fix"
            text: root.buttonText
            armed: rec.armed
            busy: rec.state === "busy"
            enabled: rec.state === ""
            Layout.minimumWidth: 92
            onClicked: App.model.run(rec.id)
        }
    }
}
