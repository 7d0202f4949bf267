import Sorrelin
import QtQuick

// The three stages of a scan as a column: what is done, what runs, and how far it got.
Column {
    id: root
    property var progress: null

    spacing: 0
    Repeater {
        model: WindowWords.scanSteps(root.progress)
        delegate: Item {
            required property var modelData
            width: root.width
            implicitWidth: stepRow.implicitWidth
            height: 22
            Row {
                id: stepRow
                anchors.verticalCenter: parent.verticalCenter
                spacing: 10
                Item {
                    width: 14
                    height: 14
                    anchors.verticalCenter: parent.verticalCenter
                    Glyph {
                        anchors.centerIn: parent
                        visible: modelData.state === "done"
                        symbol: "checkmark"
                        size: 14
                        color: Palette.green
                    }
                    Spinner {
                        anchors.centerIn: parent
                        visible: modelData.state === "active"
                        size: 12
                        color: Palette.amber
                    }
                    Rectangle {
                        anchors.centerIn: parent
                        visible: modelData.state === ""
                        width: 6
                        height: 6
                        radius: 3
                        color: Palette.dim
                    }
                }
                UiText {
                    anchors.verticalCenter: parent.verticalCenter
                    text: modelData.title
                    color: modelData.state === "" ? Palette.text4 : Palette.text
                    font.pixelSize: Metrics.body
                }
                UiText {
                    anchors.verticalCenter: parent.verticalCenter
                    visible: modelData.detail !== ""
                    text: modelData.detail
                    color: Palette.text3
                    font.pixelSize: Metrics.small
                }
            }
        }
    }
}
