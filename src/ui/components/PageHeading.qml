import Sorrelin
import QtQuick
import QtQuick.Layouts

// The head of a tab: its title in large type and the sentence under it; whatever the tab puts
// inside (pills, chips) stands at the right, level with the title.
RowLayout {
    id: root
    property string title: ""
    property string subtitle: ""
    default property alias trailing: side.data

    spacing: Metrics.gapWide
    ColumnLayout {
        Layout.fillWidth: true
        Layout.alignment: Qt.AlignTop
        spacing: 4
        UiText {
            Layout.fillWidth: true
            text: root.title
            font.pixelSize: Metrics.heading
            font.weight: Font.Bold
            Accessible.role: Accessible.Heading
        }
        UiText {
            Layout.fillWidth: true
            text: root.subtitle
            color: Palette.text2
            font.pixelSize: Metrics.body
        }
    }
    RowLayout {
        id: side
        Layout.alignment: Qt.AlignTop
        spacing: Metrics.gap
    }
}
