import Sorrelin
import QtQuick
import QtQuick.Layouts

// The one fix that helps most now, with its button as on the Home tab; a calm line when
// nothing needs the user.
PanelSection {
    id: root
    readonly property var model: App.model
    readonly property int count: model ? model.nowRecs.count : 0
    objectName: "section-nextStep"

    RowFilter {
        id: first
        source: root.model ? root.model.nowRecs : null
        limit: 1
    }

    Repeater {
        model: first
        ColumnLayout {
            id: card
            required property var model
            objectName: "rec"
            Layout.fillWidth: true
            spacing: 6
            readonly property string buttonWords: PanelView.recButtonOf({
                state: model.state, armed: model.armed, actionLabel: model.actionLabel,
                shortLabel: model.shortLabel, busyLabel: model.busyLabel, doneLabel: model.doneLabel })

            LabelRow {
                symbol: "sparkle"
                text: "Best next step"
                color: Palette.amberText
                fontSize: Metrics.caption
                weight: Font.DemiBold
                Layout.alignment: Qt.AlignLeft
            }
            UiText {
                objectName: "title"
                Layout.fillWidth: true
                text: card.model.title
                font.pixelSize: Metrics.emphasis
                font.weight: Font.DemiBold
            }
            UiText {
                Layout.fillWidth: true
                text: card.model.why
                color: Palette.text2
                font.pixelSize: Metrics.small
                wrapMode: Text.Wrap
                elide: Text.ElideRight
                maximumLineCount: 3
            }
            UiText {
                objectName: "then"
                Layout.fillWidth: true
                visible: root.count > 1
                text: root.count > 1 ? "Then: " + root.model.nowRecs.get(1).title : ""
                color: Palette.text3
                font.pixelSize: Metrics.small
            }
            PrimaryButton {
                objectName: "act"
                Layout.fillWidth: true
                Layout.topMargin: 2
                visible: card.model.state !== "done"
                text: card.buttonWords
                busy: card.model.state === "busy"
                enabled: card.model.state === ""
                onClicked: root.model.run(card.model.id)
            }
            LabelRow {
                objectName: "done"
                visible: card.model.state === "done"
                done: true
                text: "Done. " + card.model.doneChip
                color: Palette.greenText
                Layout.alignment: Qt.AlignLeft
            }
        }
    }

    RowLayout {
        objectName: "allClear"
        visible: root.count === 0
        Layout.fillWidth: true
        spacing: Metrics.gapWide
        IconTile { symbol: "checkmark"; tint: Palette.green; size: 30 }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 1
            UiText { text: "Nothing needs you right now"; font.weight: Font.DemiBold }
            UiText { text: "Sorrelin keeps watching."; color: Palette.text3; font.pixelSize: Metrics.small }
        }
    }
}
