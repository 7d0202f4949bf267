import Sorrelin
import QtQuick

// A symbol in a rounded tile washed with its tint: the icon of a row without an app icon.
Rectangle {
    id: root
    property string symbol: ""
    property color tint: Palette.slate
    property real size: 30

    implicitWidth: size
    implicitHeight: size
    radius: Math.round(size * 0.28)
    color: Qt.rgba(tint.r, tint.g, tint.b, 0.14)
    border.width: 1
    border.color: Qt.rgba(tint.r, tint.g, tint.b, 0.18)
    Accessible.ignored: true

    Glyph {
        anchors.centerIn: parent
        symbol: root.symbol
        color: root.tint
        size: Math.round(root.size * 0.56)
    }
}
