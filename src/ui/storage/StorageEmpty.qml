import Sorrelin
import QtQuick
import QtQuick.Layouts

// Before the first walk: what the map will show, and the button that starts it.
Item {
    id: root
    readonly property bool busy: App.model ? App.model.storageBusy : false
    objectName: "storageEmpty"
    implicitHeight: column.implicitHeight + 80

    ColumnLayout {
        id: column
        anchors.centerIn: parent
        width: Math.min(parent.width - 40, 440)
        spacing: Metrics.gapWide
        IconTile {
            Layout.alignment: Qt.AlignHCenter
            symbol: "chart.pie"
            tint: Palette.purple
            size: 56
        }
        UiText {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            text: root.busy ? "Measuring your disk" : "See what takes your space"
            font.pixelSize: Metrics.heading
            font.weight: Font.DemiBold
        }
        UiText {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            text: "Apps, Downloads, videos, photos, projects and app data, sized up and sorted, with the biggest files on top."
            color: Palette.text2
            wrapMode: Text.Wrap
            elide: Text.ElideNone
        }
        PrimaryButton {
            objectName: "measure"
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: Metrics.gap
            text: root.busy ? "Measuring" : "Measure my disk"
            busy: root.busy
            enabled: !root.busy
            onClicked: App.model.measureStorage()
        }
        UiText {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            text: "Takes a minute or two and runs in the background."
            color: Palette.text4
            font.pixelSize: Metrics.small
        }
    }
}
