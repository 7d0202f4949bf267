import Sorrelin
import QtQuick
import QtQuick.Layouts

// One installed app: its icon and name, when it was last used, its total against the
// biggest app, and a button that shows its desktop entry in the file manager.
Item {
    id: root
    property string name: ""
    property string path: ""
    property real appBytes: 0
    property real dataBytes: 0
    property real total: 0
    property real maximum: 0
    property string usage: ""
    property bool stale: false

    implicitHeight: 44
    implicitWidth: 400
    Accessible.role: Accessible.ListItem
    Accessible.name: name + ", " + Fmt.bytes(total)

    HoverWash { anchors.fill: parent; radius: Metrics.radiusSmall; hovered: hover.hovered }
    HoverHandler { id: hover }
    Tip { text: "The app " + Fmt.bytes(root.appBytes) + ", its data " + Fmt.bytes(root.dataBytes); shown: hover.hovered }

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 8
        anchors.rightMargin: 8
        spacing: Metrics.gap
        ItemIcon { appPath: root.path; symbol: "app"; size: 26 }
        ColumnLayout {
            Layout.fillWidth: true
            Layout.minimumWidth: 60
            spacing: 1
            UiText {
                Layout.fillWidth: true
                text: root.name
                font.weight: Font.Medium
            }
            UiText {
                objectName: "usage"
                Layout.fillWidth: true
                text: root.usage
                color: root.stale ? Palette.amberText : Palette.text3
                font.pixelSize: Metrics.small
            }
        }
        SizeBar {
            Layout.preferredWidth: 70
            value: root.total
            maximum: root.maximum
            tint: Palette.indigo
        }
        UiText {
            Layout.preferredWidth: 66
            horizontalAlignment: Text.AlignRight
            text: Fmt.bytes(root.total)
            color: Palette.textSoft
        }
        IconButton {
            size: 26
            symbol: "magnifyingglass"
            tip: Words.say("Show %1 in Finder").arg(root.name)
            onClicked: FileManager.show(root.path)
        }
    }
}
