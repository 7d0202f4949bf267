import Sorrelin
import QtQuick
import QtQuick.Layouts

// A place that grew: its icon, name (with where it is, when asked), a bar of its share and its bytes.
Item {
    id: root
    property var place: ({})

    implicitHeight: 38
    RowLayout {
        anchors.fill: parent
        spacing: Metrics.gapWide - 2
        IconTile { symbol: root.place.symbol || ""; tint: Palette.named(root.place.tint || "slate"); size: 26 }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 3
            RowLayout {
                Layout.fillWidth: true
                spacing: 6
                UiText {
                    // its whole width while there is room; the location gives way first
                    Layout.fillWidth: true
                    Layout.maximumWidth: Math.ceil(implicitWidth) + 1
                    text: root.place.name || ""
                    font.weight: Font.Medium
                }
                UiText {
                    Layout.fillWidth: true
                    visible: (root.place.location || "") !== ""
                    text: root.place.location || ""
                    color: Palette.text4
                    font.pixelSize: Metrics.caption
                    elide: Text.ElideMiddle
                }
            }
            Rectangle {
                Layout.fillWidth: true
                implicitHeight: 4
                radius: 2
                color: Palette.track
                Rectangle {
                    height: parent.height
                    radius: 2
                    width: parent.width * Math.max(0, Math.min(1, root.place.fraction || 0))
                    color: Palette.named(root.place.tint || "slate")
                }
            }
        }
        UiText {
            text: root.place.bytes || ""
            color: Palette.textSoft
            font.weight: Font.DemiBold
            horizontalAlignment: Text.AlignRight
            Layout.preferredWidth: 64
        }
    }
}
