import Sorrelin
import QtQuick

// What stands where a screen is not built yet: its title, centred, in the design's colours.
Item {
    id: root
    property string title: ""

    UiText {
        anchors.centerIn: parent
        text: root.title
        color: Palette.text3
        font.pixelSize: Metrics.heading
        font.weight: Font.DemiBold
    }
}
