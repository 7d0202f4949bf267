import Sorrelin
import QtQuick
import QtQuick.Shapes

// The program's own ghost, for processes left behind by a session that ended.
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
        ShapePath {
            strokeColor: "transparent"
            fillColor: root.color
            fillRule: ShapePath.OddEvenFill
            startX: 4.5; startY: 21
            PathLine { x: 4.5; y: 11 }
            PathArc { x: 19.5; y: 11; radiusX: 7.5; radiusY: 7.5 }
            PathLine { x: 19.5; y: 21 }
            PathLine { x: 17; y: 19 }
            PathLine { x: 14.5; y: 21 }
            PathLine { x: 12; y: 19 }
            PathLine { x: 9.5; y: 21 }
            PathLine { x: 7; y: 19 }
            PathLine { x: 4.5; y: 21 }
            // eyes: holes, so whatever lies beneath shows through
            PathMove { x: 10.6; y: 10.9 }
            PathArc { x: 10.6; y: 13.7; radiusX: 1.4; radiusY: 1.4 }
            PathArc { x: 10.6; y: 10.9; radiusX: 1.4; radiusY: 1.4 }
            PathMove { x: 15.0; y: 10.9 }
            PathArc { x: 15.0; y: 13.7; radiusX: 1.4; radiusY: 1.4 }
            PathArc { x: 15.0; y: 10.9; radiusX: 1.4; radiusY: 1.4 }
        }
    }
}
