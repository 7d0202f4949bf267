import Sorrelin
import QtQuick
import QtQuick.Shapes

// The program's own broom: a slanted handle and a fanned head, drawn on a 24-unit grid and
// scaled to the item.
Item {
    id: root
    property color color: Palette.amber
    implicitWidth: 16
    implicitHeight: 16

    Shape {
        anchors.centerIn: parent
        width: 24
        height: 24
        scale: Math.min(root.width, root.height) / 24
        antialiasing: true
        // handle
        ShapePath {
            strokeColor: root.color
            strokeWidth: 2.2
            capStyle: ShapePath.RoundCap
            fillColor: "transparent"
            startX: 19.5; startY: 3.5
            PathLine { x: 12.2; y: 10.8 }
        }
        // head: a fan that widens towards the floor, with two bristle lines
        ShapePath {
            strokeColor: "transparent"
            fillColor: root.color
            startX: 9.6; startY: 9.4
            PathLine { x: 14.6; y: 14.4 }
            PathQuad { x: 11.8; y: 20.6; controlX: 14.2; controlY: 18.6 }
            PathLine { x: 3.2; y: 20.8 }
            PathQuad { x: 9.6; y: 9.4; controlX: 3.6; controlY: 12.8 }
        }
        ShapePath {
            strokeColor: Qt.rgba(0, 0, 0, 0.35)
            strokeWidth: 1.1
            capStyle: ShapePath.RoundCap
            fillColor: "transparent"
            startX: 8.2; startY: 19.6
            PathLine { x: 10.9; y: 15.2 }
            PathMove { x: 5.6; y: 19.7 }
            PathLine { x: 8.6; y: 13.6 }
        }
    }
}
