import Sorrelin
import QtQuick
import QtQuick.Layouts

// One category of the map: a click opens it on its biggest folders and files, and on the
// folders that kept Sorrelin out.
Item {
    id: root
    property string kind: ""
    property string title: ""
    property string blurb: ""
    property string symbol: ""
    property string colour: "slate"
    property real bytes: 0
    property real maximum: 0
    property real diskTotal: 0
    property int unreadable: 0
    property var unreadableFolders: []
    property bool canTrash: false
    property var items: []
    property bool open: false
    signal toggled()

    readonly property color tint: Palette.named(colour)
    readonly property string folder: StorageView.folderOf(App.model, kind)

    implicitWidth: 500
    implicitHeight: column.implicitHeight
    Accessible.role: Accessible.ListItem
    Accessible.name: title + ", " + Fmt.bytes(bytes)

    ColumnLayout {
        id: column
        width: parent.width
        spacing: 0

        Item {
            id: head
            objectName: "head"
            Layout.fillWidth: true
            implicitHeight: 52

            HoverWash { anchors.fill: parent; radius: Metrics.radius; hovered: tap.hovered }
            MouseArea {
                id: tap
                property bool hovered: containsMouse
                anchors.fill: parent
                hoverEnabled: true
                cursorShape: Qt.PointingHandCursor
                onClicked: root.toggled()
            }
            Tip { text: root.open ? "Hides its biggest items" : "Shows its biggest items"; shown: tap.containsMouse }

            RowLayout {
                anchors.fill: parent
                anchors.leftMargin: 8
                anchors.rightMargin: 8
                spacing: Metrics.gapWide
                IconTile { symbol: root.symbol; tint: root.tint; size: 32 }
                ColumnLayout {
                    Layout.fillWidth: true
                    Layout.minimumWidth: 80
                    spacing: 2
                    RowLayout {
                        Layout.fillWidth: true
                        spacing: Metrics.gap
                        UiText {
                            // Keeps its length and yields only when the row is too narrow.
                            text: root.title
                            font.pixelSize: Metrics.emphasis
                            font.weight: Font.DemiBold
                        }
                        Tag {
                            objectName: "partly"
                            visible: root.unreadable >= 1
                            text: "Partly measured"
                            symbol: "lock.fill"
                            style: "warn"
                        }
                        Item { Layout.fillWidth: true }
                    }
                    UiText {
                        Layout.fillWidth: true
                        text: root.blurb
                        color: Palette.text3
                        font.pixelSize: Metrics.small
                    }
                }
                ColumnLayout {
                    spacing: 4
                    Layout.preferredWidth: 120
                    UiText {
                        objectName: "size"
                        Layout.alignment: Qt.AlignRight
                        text: Fmt.bytes(root.bytes)
                        font.pixelSize: Metrics.emphasis
                        font.weight: Font.DemiBold
                    }
                    SizeBar {
                        Layout.fillWidth: true
                        value: root.bytes
                        maximum: root.maximum
                        tint: root.tint
                    }
                    UiText {
                        Layout.alignment: Qt.AlignRight
                        text: Fmt.percent(root.diskTotal > 0 ? 100 * root.bytes / root.diskTotal : 0) + " of the disk"
                        color: Palette.text4
                        font.pixelSize: Metrics.caption
                    }
                }
                IconButton {
                    objectName: "openFolder"
                    // Keeps its place when absent, so the sizes of all rows stand in one column.
                    opacity: root.folder !== "" ? 1 : 0
                    enabled: root.folder !== ""
                    symbol: "arrow.up.forward.app"
                    tip: Words.say("Open %1 in Finder").arg(root.title)
                    onClicked: FileManager.open(root.folder)
                }
                Glyph {
                    symbol: root.open ? "chevron.up" : "chevron.down"
                    size: 14
                    color: Palette.text4
                }
            }
        }

        ColumnLayout {
            objectName: "rows"
            visible: root.open
            Layout.fillWidth: true
            Layout.leftMargin: 40
            spacing: 0
            Repeater {
                model: root.open ? root.items : []
                StorageItemRow {
                    required property var modelData
                    objectName: "item-" + modelData.name
                    Layout.fillWidth: true
                    symbol: modelData.isFolder ? "folder" : "doc"
                    tint: root.tint
                    name: modelData.name
                    detail: modelData.detail ?? ""
                    bytes: modelData.bytes
                    maximum: root.items.length > 0 ? root.items[0].bytes : 0
                    path: modelData.path
                    revealPath: modelData.reveal ?? ""
                    canTrash: root.canTrash && App.model.canTrash(modelData.path)
                }
            }
            UiText {
                visible: root.open && root.items.length === 0 && root.unreadable < 1
                Layout.leftMargin: 8
                Layout.topMargin: 4
                Layout.bottomMargin: 8
                text: "Nothing here is big enough to list."
                color: Palette.text4
                font.pixelSize: Metrics.small
            }
            UnreadableNote {
                visible: root.unreadable >= 1
                Layout.fillWidth: true
                Layout.topMargin: 4
                Layout.bottomMargin: 8
                count: root.unreadable
                folders: root.unreadableFolders
            }
        }
    }
}
