import Sorrelin
import QtQuick
import QtQuick.Layouts

// One section of the tray panel in the settings: its drag handle, symbol, title and what it
// shows, and the switch that shows or hides it.
Rectangle {
    id: root
    property string section: ""
    property string title: ""
    property string detail: ""
    property string symbol: ""
    property bool on: true
    property bool dragging: false
    readonly property Item handle: handleArea

    implicitHeight: 52
    radius: Metrics.radius
    color: dragging ? Palette.panelHover : "transparent"
    border.width: dragging ? 1 : 0
    border.color: Palette.panelStrokeHover
    Accessible.role: Accessible.ListItem
    Accessible.name: title

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 4
        anchors.rightMargin: 10
        spacing: Metrics.gapWide
        Item {
            id: handleArea
            objectName: "handle"
            implicitWidth: 24
            implicitHeight: 36
            Glyph {
                anchors.centerIn: parent
                symbol: "line.3.horizontal"
                size: 16
                color: handleHover.hovered || root.dragging ? Palette.text2 : Palette.text5
            }
            HoverHandler { id: handleHover; cursorShape: root.dragging ? Qt.ClosedHandCursor : Qt.OpenHandCursor }
        }
        IconTile {
            symbol: root.symbol
            tint: root.on ? Palette.amber : Palette.text5
            size: 30
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 1
            UiText {
                Layout.fillWidth: true
                text: root.title
                font.weight: Font.Medium
                color: root.on ? Palette.text : Palette.text5
            }
            UiText {
                Layout.fillWidth: true
                text: root.detail
                font.pixelSize: Metrics.small
                color: root.on ? Palette.text3 : Palette.text5
            }
        }
        Toggle {
            objectName: "switch"
            on: root.on
            Accessible.name: "Show " + root.title
            onToggled: on => App.prefs.set(root.section, on)
        }
    }
}
