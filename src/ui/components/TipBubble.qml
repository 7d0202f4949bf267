import Sorrelin
import QtQuick

// The bubble of every tip: dark, outlined, text wrapped to a readable measure.
Rectangle {
    id: root
    property string text: ""
    property int maxWidth: Metrics.tipWidth

    implicitWidth: Math.min(maxWidth, label.implicitWidth + 20)
    implicitHeight: label.implicitHeight + 14
    radius: Metrics.radiusSmall + 1
    color: Palette.tipBg
    border.color: Palette.tipStroke
    border.width: 1

    Text {
        id: label
        anchors.fill: parent
        anchors.margins: 10
        anchors.topMargin: 7
        anchors.bottomMargin: 7
        text: root.text
        color: Palette.tipText
        font.pixelSize: Metrics.small
        lineHeight: 1.15
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        verticalAlignment: Text.AlignVCenter
    }
}
