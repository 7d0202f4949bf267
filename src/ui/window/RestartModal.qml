import Sorrelin
import QtQuick
import QtQuick.Layouts

// "Restart your computer?": how long the system has been up, what swap holds now and what a
// restart gives back.
Panel {
    id: root
    readonly property AppModel model: App.model
    readonly property var words: WindowWords.restart(model ? model.vitals : ({}))

    objectName: "restartModal"
    width: 480
    height: body.implicitHeight + 2 * Metrics.padWide
    color: Palette.panel
    border.color: Palette.panelStrokeHover

    ColumnLayout {
        id: body
        anchors.fill: parent
        anchors.margins: Metrics.padWide
        spacing: Metrics.pad

        RowLayout {
            spacing: Metrics.gapWide
            IconTile { symbol: "arrow.counterclockwise"; tint: Palette.blue; size: 40; Layout.alignment: Qt.AlignTop }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: 4
                UiText {
                    objectName: "restartTitle"
                    Layout.fillWidth: true
                    text: root.words.title
                    font.pixelSize: Metrics.title + 2
                    font.weight: Font.DemiBold
                }
                UiText {
                    Layout.fillWidth: true
                    text: root.words.since + " " + root.words.note
                    color: Palette.text2
                    wrapMode: Text.Wrap
                    elide: Text.ElideNone
                }
            }
        }

        Rectangle {
            Layout.fillWidth: true
            implicitHeight: rows.implicitHeight + 8
            radius: Metrics.radius
            color: Palette.sunken
            border.width: 1
            border.color: Palette.line
            Column {
                id: rows
                anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
                Repeater {
                    model: root.words.rows
                    delegate: Item {
                        required property var modelData
                        required property int index
                        width: rows.width
                        height: 38
                        Rectangle {
                            visible: index > 0
                            anchors { left: parent.left; right: parent.right; top: parent.top; leftMargin: Metrics.gapWide; rightMargin: Metrics.gapWide }
                            height: 1
                            color: Palette.line
                        }
                        RowLayout {
                            anchors { fill: parent; leftMargin: Metrics.gapWide; rightMargin: Metrics.gapWide }
                            spacing: 10
                            Glyph {
                                symbol: modelData.symbol
                                size: 16
                                color: modelData.symbol === "checkmark" ? Palette.green : Palette.text2
                            }
                            UiText { Layout.fillWidth: true; text: modelData.left; color: Palette.textSoft }
                            UiText {
                                text: modelData.right
                                color: modelData.symbol === "checkmark" ? Palette.greenText : Palette.text
                                font.weight: Font.DemiBold
                            }
                        }
                    }
                }
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: Metrics.gap
            SecondaryButton { text: "Cancel"; onClicked: root.model.restartSheet = false }
            Item { Layout.fillWidth: true }
            SecondaryButton { objectName: "remind"; text: "Remind me tonight"; onClicked: root.model.remindRestart() }
            PrimaryButton { objectName: "restartNow"; text: "Restart now"; onClicked: root.model.restartNow() }
        }
    }
}
