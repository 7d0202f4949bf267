import Sorrelin
import QtQuick
import QtQuick.Layouts

// One line of the who panel: who it is, how many processes, and a bar of its share.
Item {
    id: root
    // The row of the list, with its roles by name.
    property var row
    // The value of a full bar.
    property real extent: 1

    objectName: "who-" + row.id
    implicitHeight: 44

    RowLayout {
        anchors.fill: parent
        spacing: Metrics.gapWide
        ItemIcon {
            symbol: row.symbol
            tint: Palette.named(row.tint)
            appPath: row.appPath ? row.appPath : ""
            size: 28
        }
        ColumnLayout {
            Layout.preferredWidth: 220
            Layout.maximumWidth: 220
            spacing: 1
            UiText {
                Layout.fillWidth: true
                text: row.name
                font.weight: Font.Medium
            }
            UiText {
                Layout.fillWidth: true
                visible: row.sub !== ""
                text: row.sub
                color: Palette.text3
                font.pixelSize: Metrics.caption
            }
        }
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: 8
            radius: 4
            color: Palette.track
            GlidingBar {
                height: parent.height
                radius: parent.radius
                goal: root.extent > 0 ? Math.max(row.value > 0 ? 4 : 0, parent.width * Math.min(1, row.value / root.extent)) : 0
                color: Palette.named(row.tint)
                opacity: 0.85
            }
        }
        UiText {
            objectName: "label"
            text: row.label
            color: Palette.textSoft
            font.weight: Font.DemiBold
            horizontalAlignment: Text.AlignRight
            Layout.preferredWidth: 72
        }
    }
}
