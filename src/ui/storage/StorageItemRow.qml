import Sorrelin
import QtQuick
import QtQuick.Layouts

// One folder or file of the map: its symbol, name, where it is and when it changed, its size
// against the biggest of the list, and its buttons (show it in the file manager, send it to
// the Trash in two clicks).
Item {
    id: root
    property string symbol: "folder"
    property color tint: Palette.slate
    property string name: ""
    property string detail: ""
    property string date: ""
    property real bytes: 0
    property real maximum: 0
    property string path: ""
    property string revealPath: ""
    property bool canTrash: false

    implicitHeight: 44
    implicitWidth: 400
    Accessible.role: Accessible.ListItem
    Accessible.name: name + ", " + Fmt.bytes(bytes)

    HoverWash { anchors.fill: parent; hovered: hover.hovered; radius: Metrics.radiusSmall }
    HoverHandler { id: hover }

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 8
        anchors.rightMargin: 8
        spacing: Metrics.gap

        IconTile { symbol: root.symbol; tint: root.tint; size: 26 }
        ColumnLayout {
            Layout.fillWidth: true
            Layout.minimumWidth: 60
            spacing: 1
            UiText {
                objectName: "name"
                Layout.fillWidth: true
                text: root.name
                font.weight: Font.Medium
                elide: Text.ElideMiddle
            }
            // The folder yields to the date: "changed Nov 14" says more than the middle of a path.
            RowLayout {
                id: where
                Layout.fillWidth: true
                visible: root.detail !== "" || root.date !== ""
                spacing: 0
                UiText {
                    objectName: "detail"
                    visible: root.detail !== ""
                    Layout.preferredWidth: Math.min(implicitWidth, Math.max(90, where.width - (when.visible ? when.implicitWidth : 0)))
                    text: root.detail
                    color: Palette.text3
                    font.pixelSize: Metrics.small
                    elide: Text.ElideMiddle
                }
                UiText {
                    id: when
                    objectName: "date"
                    Layout.fillWidth: true
                    visible: root.date !== ""
                    text: (root.detail !== "" ? "  ·  " : "") + root.date
                    color: Palette.text3
                    font.pixelSize: Metrics.small
                }
            }
        }
        SizeBar {
            // In a narrow column the names and dates need the room more than the bar.
            visible: root.width >= 480
            Layout.preferredWidth: 70
            Layout.alignment: Qt.AlignVCenter
            value: root.bytes
            maximum: root.maximum
            tint: root.tint
        }
        UiText {
            Layout.preferredWidth: 66
            horizontalAlignment: Text.AlignRight
            text: Fmt.bytes(root.bytes)
            color: Palette.textSoft
        }
        Item {
            // The buttons keep their column whether or not a row has them.
            Layout.preferredWidth: 60
            Layout.preferredHeight: 26
            Row {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                spacing: 4
                IconButton {
                    objectName: "reveal"
                    visible: root.revealPath !== ""
                    size: 26
                    symbol: "magnifyingglass"
                    tip: root.name !== "" ? Words.say("Show %1 in Finder").arg(root.name) : Words.say("Show in Finder")
                    onClicked: FileManager.show(root.revealPath)
                }
                TrashButton {
                    visible: root.canTrash
                    path: root.path
                    name: root.name
                    bytes: root.bytes
                }
            }
        }
    }
}
