import Sorrelin
import QtQuick
import QtQuick.Layouts

// The most useful thing to do, large: why it comes first, what it gives back, and the button
// that does it.
Panel {
    id: root
    readonly property AppModel model: App.model
    // The advice as a row map (the roles of the advice lists).
    property var rec: ({})
    readonly property var button: HomeWords.action(rec)
    readonly property var gain: model && rec.id !== undefined
                                ? (model.vitals, HomeWords.impact(rec, model.vitals, model.disk, model.appUsage, model.physicalMemory, model.cores))
                                : ({ segments: [] })
    readonly property color tint: Palette.named(rec.tint || "amber")

    objectName: "heroCard"
    implicitHeight: body.implicitHeight + 2 * Metrics.padWide
    transform: FailShake { recId: root.rec.id || ""; failedRec: root.model ? root.model.failedRec : "" }

    Rectangle {
        anchors.fill: parent
        radius: parent.radius
        gradient: Gradient {
            GradientStop { position: 0; color: Qt.rgba(root.tint.r, root.tint.g, root.tint.b, 0.07) }
            GradientStop { position: 1; color: "transparent" }
        }
    }

    ColumnLayout {
        id: body
        anchors { fill: parent; margins: Metrics.padWide }
        spacing: Metrics.gapWide

        // The eyebrow.
        Flow {
            Layout.fillWidth: true
            spacing: Metrics.gap
            Glyph { symbol: "sparkle"; color: Palette.amberText; size: 16; y: 3 }
            ReasonTag { reason: root.rec.reason || "" }
            Chip { visible: root.rec.safe === true; text: "Nothing to save"; symbol: "checkmark"; style: "ok" }
            Chip {
                visible: typeof root.rec.caveat === "string" && root.rec.caveat !== ""
                text: root.rec.caveat || ""
                symbol: "arrow.clockwise"
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: Metrics.pad
            ItemIcon {
                Layout.alignment: Qt.AlignTop
                symbol: root.rec.symbol || ""
                tint: root.tint
                appPath: root.rec.appPath || ""
                size: 46
            }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: 4
                UiText {
                    objectName: "heroTitle"
                    Layout.fillWidth: true
                    text: root.rec.title || ""
                    font.pixelSize: Metrics.title + 4
                    font.weight: Font.Bold
                }
                UiText {
                    objectName: "heroWhy"
                    Layout.fillWidth: true
                    text: root.rec.why || ""
                    color: Palette.text2
                    wrapMode: Text.Wrap
                    elide: Text.ElideRight
                    maximumLineCount: 3
                }
            }
        }

        ImpactRow { Layout.fillWidth: true; impact: root.gain }

        RowLayout {
            Layout.fillWidth: true
            spacing: Metrics.gap
            PrimaryButton {
                objectName: "heroAction"
                text: root.button.text || ""
                busy: root.button.busy === true
                done: root.button.done === true
                enabled: !root.button.busy && !root.button.done && root.rec.state !== "queued"
                onClicked: root.model.run(root.rec.id)
            }
            SecondaryButton {
                objectName: "notNow"
                visible: !root.button.done
                text: "Not now"
                onClicked: root.model.snooze(root.rec.id)
            }
            LinkButton {
                id: why
                objectName: "whyFirst"
                visible: (root.rec.tip || "") !== ""
                text: "Why this first?"
                color: Palette.text2
                onClicked: whyTip.pinned = !whyTip.pinned
                Tip { id: whyTip; property bool pinned: false; text: root.rec.tip || ""; shown: pinned || why.hovered; edge: "top" }
            }
            Item { Layout.fillWidth: true }
            UiText {
                objectName: "doneLine"
                visible: root.button.done === true
                text: "Done. " + (root.rec.doneChip || "") + "."
                color: Palette.greenText
            }
        }
    }
}
