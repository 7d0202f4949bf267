import Sorrelin
import QtQuick

// One symbol by its name ("checkmark", "internaldrive", "custom.broom"): a glyph of the symbol
// font, or one of our own shapes. A name the table lacks draws a neutral mark.
Item {
    id: root
    property string symbol: ""
    property color color: Palette.text2
    property real size: 16

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    readonly property string shape: Symbols.shape(symbol)

    Text {
        anchors.centerIn: parent
        visible: root.shape === "" && Symbols.available && root.symbol !== ""
        text: Symbols.glyph(root.symbol)
        font.family: Symbols.family
        font.pixelSize: Math.round(root.size)
        color: root.color
        renderType: Text.QtRendering
        textFormat: Text.PlainText
    }
    // Without the symbol font a plain ring keeps the place of the glyph.
    Rectangle {
        visible: root.shape === "" && !Symbols.available && root.symbol !== ""
        anchors.centerIn: parent
        width: root.size * 0.6
        height: width
        radius: width / 2
        color: "transparent"
        border.color: root.color
        border.width: Math.max(1, root.size / 12)
    }
    BroomShape {
        visible: root.shape === "broom"
        anchors.fill: parent
        color: root.color
    }
    GhostShape {
        visible: root.shape === "ghost"
        anchors.fill: parent
        color: root.color
    }
}
