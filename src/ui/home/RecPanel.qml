import Sorrelin
import QtQuick
import QtQuick.Layouts

// A list of advice under a title: "Next up" with the safe batch, or "Can wait" with a note on
// why these wait. `skip` leaves out the first rows (the hero shows the first of now).
ColumnLayout {
    id: root
    readonly property AppModel model: App.model
    property string title: ""
    property var recs: null
    property int skip: 0
    property string empty: ""
    property bool batch: false
    property string info: ""
    readonly property int shown: recs ? Math.max(0, recs.count - skip) : 0
    readonly property int safeCount: model ? model.safeRecs.count : 0

    spacing: Metrics.gap

    RowLayout {
        Layout.fillWidth: true
        Layout.topMargin: Metrics.gapTight
        spacing: Metrics.gap
        UiText { text: root.title; font.pixelSize: Metrics.title; font.weight: Font.DemiBold }
        CountBadge { n: root.shown; visible: root.shown > 0 }
        InfoTip { visible: root.info !== ""; text: root.info }
        Item { Layout.fillWidth: true }
        SecondaryButton {
            id: batchButton
            objectName: "batchButton"
            visible: root.batch && (root.safeCount > 0 || (root.model !== null && !!root.model.batch))
            text: root.model ? HomeWords.batchButton(root.model.batch, root.safeCount) : ""
            symbol: "sparkle"
            busy: root.model !== null && !!root.model.batch
            enabled: root.model !== null && !root.model.batch
            tip: {
                if (!root.model) return "";
                root.model.snoozeTick; root.safeCount;
                return HomeWords.batchTip(HomeWords.rows(root.model.safeRecs));
            }
            onClicked: root.model.runSafe()
        }
    }

    Panel {
        Layout.fillWidth: true
        implicitHeight: rows.implicitHeight + 8
        Column {
            id: rows
            y: 4
            width: parent.width
            UiText {
                objectName: "emptyText"
                visible: root.shown === 0
                x: Metrics.pad
                height: 44
                text: root.empty
                color: Palette.text3
            }
            Repeater {
                model: root.recs
                delegate: RecRow {
                    required property int index
                    required property var model
                    width: rows.width
                    visible: index >= root.skip
                    first: index === root.skip
                    rec: model
                }
            }
        }
    }
}
