import Sorrelin
import QtQuick

// A small question mark that opens its tip on hover (and on a click, for touch).
Item {
    id: root
    property string text: ""
    property string edge: "bottom"
    property real size: 15

    implicitWidth: size
    implicitHeight: size
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Rectangle {
        anchors.fill: parent
        radius: width / 2
        color: area.containsMouse ? Palette.chipStroke : "transparent"
        border.width: 1.2
        border.color: area.containsMouse ? Palette.text3 : Palette.text5
        Behavior on color { ColorAnimation { duration: Motion.hover.duration } }
        Text {
            anchors.centerIn: parent
            anchors.verticalCenterOffset: 0.5
            text: "?"
            color: area.containsMouse ? Palette.text : Palette.text3
            font.pixelSize: Math.round(root.size * 0.68)
            font.weight: Font.DemiBold
        }
    }
    MouseArea {
        id: area
        anchors.fill: parent
        anchors.margins: -4
        hoverEnabled: true
        onClicked: pinned = !pinned
        property bool pinned: false
        onContainsMouseChanged: if (!containsMouse) pinned = false
    }
    Tip {
        text: root.text
        edge: root.edge
        shown: area.containsMouse || area.pinned
        delay: area.pinned ? 0 : 120
    }
}
