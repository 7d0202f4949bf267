import Sorrelin
import QtQuick
import QtQuick.Templates as T

// A text button: words in a colour that brighten under the pointer.
T.AbstractButton {
    id: root
    property color color: Palette.blueText
    property int size: Metrics.body
    property int weight: Font.Medium
    property string symbol: ""
    property string tip: ""

    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    padding: 2
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    Accessible.role: Accessible.Button
    Accessible.name: text

    readonly property color ink: !enabled ? Palette.text5 : hovered ? Qt.lighter(color, 1.18) : color

    contentItem: LabelRow {
        text: root.text
        symbol: root.symbol
        color: root.ink
        fontSize: root.size
        weight: root.weight
        underline: root.visualFocus
        spacing: 4
    }
    Tip { objectName: "tip"; text: root.tip; shown: root.hovered }
}
