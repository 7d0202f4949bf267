import Sorrelin
import QtQuick

// One entry of the ring's legend: its colour, its words, and what it means on hover.
Row {
    id: root
    property color colour: Palette.other
    property bool striped: false
    property string text: ""
    property string tip: ""

    spacing: 6
    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        width: 9
        height: 9
        radius: 3
        color: root.striped ? Qt.rgba(root.colour.r, root.colour.g, root.colour.b, 0.45) : root.colour
        border.width: root.striped ? 1 : 0
        border.color: root.colour
    }
    UiText {
        anchors.verticalCenter: parent.verticalCenter
        text: root.text
        color: Palette.text2
        font.pixelSize: Metrics.small
    }
    InfoTip {
        anchors.verticalCenter: parent.verticalCenter
        visible: root.tip !== ""
        text: root.tip
        size: 13
    }
}
