import Sorrelin
import QtQuick

// A pill that says how things stand ("Running well", "Live", "Scanning · 40%"). `live` shows a
// beating dot; `fraction`, when set, fills the pill from the left as work goes on.
Rectangle {
    id: root
    property string text: ""
    property string symbol: ""
    property string style: "plain"
    property bool live: false
    property bool pulse: false
    property var fraction: undefined
    property color fg: style === "warn" ? Palette.amberText : style === "ok" ? Palette.greenText : Palette.textSoft
    property color bg: style === "warn" ? Qt.rgba(0.96, 0.73, 0.27, 0.12)
                     : style === "ok" ? Qt.rgba(0.25, 0.83, 0.55, 0.12) : Palette.sunken
    property string tip: ""

    implicitHeight: 26
    implicitWidth: row.implicitWidth + 22
    radius: height / 2
    color: bg
    border.width: 1
    border.color: style === "plain" ? Palette.panelStroke : Qt.rgba(fg.r, fg.g, fg.b, 0.22)
    clip: true
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    readonly property bool hasFraction: typeof fraction === "number" && isFinite(fraction)

    Rectangle {
        visible: root.hasFraction
        anchors.left: parent.left
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        width: root.hasFraction ? root.width * Math.max(0, Math.min(1, root.fraction)) : 0
        radius: root.radius
        color: Qt.rgba(root.fg.r, root.fg.g, root.fg.b, 0.12)
        Behavior on width { NumberAnimation { duration: Motion.smooth.duration; easing: Motion.smooth.easing } }
    }
    LabelRow {
        id: row
        anchors.fill: parent
        anchors.leftMargin: 11
        anchors.rightMargin: 11
        text: root.text
        symbol: root.symbol
        dot: root.live
        color: root.fg
        fontSize: Metrics.small
        glyphSize: 14
    }
    Pulse { target: row.dotItem; active: root.live }
    Pulse { target: row; active: root.pulse }

    HoverHandler { id: hover; enabled: root.tip !== "" }
    Tip { text: root.tip; shown: hover.hovered }
}
