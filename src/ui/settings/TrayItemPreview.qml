import Sorrelin
import QtQuick

// The tray item as it stands in the panel of the desktop: the disk symbol (the warning while
// space is low) and the label of a style, with today's figures.
Rectangle {
    id: root
    property string styleId: App.prefs ? App.prefs.labelStyle : "freeSpace"
    readonly property string label: { void (App.model ? [App.model.disk, App.model.vitals] : 0); return PanelView.labelOf(App.model, styleId); }

    implicitHeight: 24
    implicitWidth: row.implicitWidth + 16
    radius: 5
    color: Palette.toolbar
    border.width: 1
    border.color: Palette.toolbarLine

    Row {
        id: row
        anchors.centerIn: parent
        spacing: 5
        Glyph {
            anchors.verticalCenter: parent.verticalCenter
            symbol: App.model && App.model.isLow ? "exclamationmark.triangle.fill" : "internaldrive"
            color: App.model && App.model.isLow ? Palette.amberText : Palette.text
            size: 14
        }
        UiText {
            objectName: "label"
            anchors.verticalCenter: parent.verticalCenter
            visible: text !== ""
            text: root.label
            font.pixelSize: Metrics.small
            font.weight: Font.Medium
        }
    }
}
