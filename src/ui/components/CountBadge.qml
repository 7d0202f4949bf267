import Sorrelin
import QtQuick

// A count beside a heading. Large counts keep their digits; the badge grows to fit them.
Rectangle {
    id: root
    property int n: 0
    property color fg: Palette.text2
    property color bg: Palette.count

    implicitHeight: 18
    implicitWidth: Math.max(implicitHeight, label.implicitWidth + 12)
    radius: height / 2
    color: bg
    Accessible.role: Accessible.StaticText
    Accessible.name: String(n)

    Text {
        id: label
        anchors.centerIn: parent
        text: Fmt.grouped(root.n)
        color: root.fg
        font.pixelSize: Metrics.caption
        font.weight: Font.DemiBold
    }
}
