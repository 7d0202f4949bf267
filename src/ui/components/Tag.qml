import Sorrelin
import QtQuick

// A compact label that states a fact about a row ("In use", "To Trash", "Idle"): squarer and
// quieter than a chip. Same colour rules as Chip.
Rectangle {
    id: root
    property string text: ""
    property string symbol: ""
    property string style: "plain"
    property color fg: style === "warn" ? Palette.amberText : style === "ok" ? Palette.greenText : Palette.text2
    property color bg: style === "warn" ? Qt.rgba(0.96, 0.73, 0.27, 0.12)
                     : style === "ok" ? Qt.rgba(0.25, 0.83, 0.55, 0.12) : Palette.count
    property bool pulse: false
    property string tip: ""

    implicitHeight: 20
    implicitWidth: row.implicitWidth + 12
    radius: 5
    color: bg
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    LabelRow {
        id: row
        anchors.fill: parent
        anchors.leftMargin: 6
        anchors.rightMargin: 6
        text: root.text
        symbol: root.symbol
        color: root.fg
        fontSize: Metrics.caption
        weight: Font.DemiBold
        glyphSize: 12
        spacing: 4
    }
    Pulse { target: root; active: root.pulse }

    HoverHandler { id: hover; enabled: root.tip !== "" }
    Tip { text: root.tip; shown: hover.hovered }
}
