import Sorrelin
import QtQuick
import QtQuick.Templates as T

// A square button with a symbol: toolbar and row icons. `tip` names what it does, and is also
// what assistive tools read.
T.AbstractButton {
    id: root
    property string symbol: ""
    property real size: 28
    property color color: Palette.text2
    property string tip: ""

    implicitWidth: size
    implicitHeight: size
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: tip !== "" ? tip : text

    scale: pressed ? 0.94 : 1
    Behavior on scale { NumberAnimation { duration: Motion.press.duration; easing: Motion.press.easing } }

    background: Rectangle {
        radius: Metrics.radiusSmall + 1
        color: root.down ? Qt.rgba(1, 1, 1, 0.08) : root.hovered ? Qt.rgba(1, 1, 1, 0.055) : "transparent"
        border.width: root.visualFocus ? 1 : 0
        border.color: Palette.textSoft
        Behavior on color { ColorAnimation { duration: Motion.hover.duration } }
    }
    contentItem: Item {
        Glyph {
            anchors.centerIn: parent
            symbol: root.symbol
            size: Math.round(root.size * 0.6)
            color: root.enabled ? (root.hovered ? Palette.text : root.color) : Palette.text5
        }
    }
    Tip { objectName: "tip"; text: root.tip; shown: root.hovered }
}
