import Sorrelin
import QtQuick
import QtQuick.Layouts

// A row of the category list that is no category: the system's share, swap, or the walk
// still going. It has no items to open.
Item {
    id: root
    property string symbol: ""
    property string colour: "slate"
    property string title: ""
    property string note: ""
    property real bytes: 0
    property real maximum: 0
    property real diskTotal: 0
    property bool busy: false

    readonly property color tint: Palette.named(colour)
    implicitWidth: 500
    implicitHeight: Math.max(52, texts.implicitHeight + 16)
    Accessible.role: Accessible.ListItem
    Accessible.name: title

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 8
        anchors.rightMargin: 8 + 28 + 14 + 2 * Metrics.gapWide // lines up with the categories' sizes
        spacing: Metrics.gapWide
        IconTile { symbol: root.symbol; tint: root.tint; size: 32 }
        ColumnLayout {
            id: texts
            Layout.fillWidth: true
            spacing: 2
            RowLayout {
                spacing: Metrics.gap
                UiText {
                    text: root.title
                    font.pixelSize: Metrics.emphasis
                    font.weight: Font.DemiBold
                }
                Spinner { visible: root.busy; size: 12 }
            }
            UiText {
                Layout.fillWidth: true
                text: root.note
                color: Palette.text3
                font.pixelSize: Metrics.small
                wrapMode: Text.Wrap
                elide: Text.ElideNone
            }
        }
        ColumnLayout {
            visible: !root.busy
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
    }
}
