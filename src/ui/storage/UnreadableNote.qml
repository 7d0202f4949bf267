import Sorrelin
import QtQuick
import QtQuick.Layouts

// The folders of a category whose permissions kept Sorrelin out, named so the user can open
// them up or leave them be. There is no settings pane that grants access on this system.
Rectangle {
    id: root
    property int count: 0
    property var folders: []

    objectName: "unreadableNote"
    implicitHeight: column.implicitHeight + 2 * 10
    radius: Metrics.radius
    color: Qt.rgba(0.96, 0.73, 0.27, 0.07)
    border.width: 1
    border.color: Qt.rgba(0.96, 0.73, 0.27, 0.18)

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: 10
        spacing: 4
        RowLayout {
            Layout.fillWidth: true
            spacing: Metrics.gap
            Glyph { symbol: "lock.fill"; size: 14; color: Palette.amberText }
            UiText {
                objectName: "sentence"
                Layout.fillWidth: true
                text: StorageView.unreadableNoteOf(root.count)
                color: Palette.amberText
                font.pixelSize: Metrics.small
                wrapMode: Text.Wrap
                elide: Text.ElideNone
            }
        }
        Repeater {
            model: root.folders
            UiText {
                required property string modelData
                objectName: "folder"
                Layout.fillWidth: true
                Layout.leftMargin: 22
                text: StorageView.tilde(App.model, modelData)
                color: Palette.textSoft
                font.pixelSize: Metrics.small
                elide: Text.ElideMiddle
            }
        }
        UiText {
            visible: root.count > root.folders.length && root.folders.length > 0
            Layout.leftMargin: 22
            text: "and " + (root.count - root.folders.length) + " more"
            color: Palette.text3
            font.pixelSize: Metrics.small
        }
    }
}
