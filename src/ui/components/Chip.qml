import Sorrelin
import QtQuick

// A small rounded label with an optional symbol. `style` "plain", "warn" or "ok" picks the
// colours unless `fg`/`bg` are given; `live` adds a beating dot, `pulse` beats the whole chip.
Rectangle {
    id: root
    property string text: ""
    property string symbol: ""
    property string style: "plain"
    property bool live: false
    property bool pulse: false
    property color fg: style === "warn" ? Palette.amberText : style === "ok" ? Palette.greenText : Palette.textChip
    property color bg: style === "warn" ? Qt.rgba(0.96, 0.73, 0.27, 0.13)
                     : style === "ok" ? Qt.rgba(0.25, 0.83, 0.55, 0.13) : Palette.chip
    property int fontSize: Metrics.small
    property string tip: ""

    implicitHeight: Metrics.chipHeight
    implicitWidth: row.implicitWidth + 18
    radius: height / 2
    color: bg
    border.width: style === "plain" && bg === Palette.chip ? 1 : 0
    border.color: Palette.chipStroke
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    LabelRow {
        id: row
        anchors.fill: parent
        anchors.leftMargin: 9
        anchors.rightMargin: 9
        text: root.text
        symbol: root.symbol
        dot: root.live
        color: root.fg
        fontSize: root.fontSize
        glyphSize: root.fontSize + 1
        spacing: 5
    }
    Pulse { target: row.dotItem; active: root.live }
    Pulse { target: root; active: root.pulse }

    HoverHandler { id: hover; enabled: root.tip !== "" }
    Tip { text: root.tip; shown: hover.hovered }
}
