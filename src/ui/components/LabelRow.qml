import Sorrelin
import QtQuick

// The inside of buttons, chips, tags and pills: an optional leading mark (a beating dot, a
// spinner, a drawn tick or a symbol) and words, centred, with the words cut short with an
// ellipsis when the row is given less than it wants. Its implicit width is what it wants.
Item {
    id: root
    property string text: ""
    property string symbol: ""
    property color color: Palette.text
    property int fontSize: Metrics.body
    property int weight: Font.Medium
    property bool underline: false
    property real glyphSize: fontSize + 2
    property bool dot: false
    property bool busy: false
    property bool done: false
    property real spacing: 6
    // The dot, for a pulse to beat.
    readonly property Item dotItem: dotMark

    readonly property bool showGlyph: symbol !== "" && !busy && !done
    readonly property real markSize: Math.round(glyphSize * 0.88)
    readonly property real lead: (dot ? dotMark.width + spacing : 0)
                                 + (busy ? markSize + spacing : 0)
                                 + (done ? markSize + spacing : 0)
                                 + (showGlyph ? glyphSize + (text !== "" ? spacing : 0) : 0)

    implicitWidth: Math.ceil(lead + (text !== "" ? label.implicitWidth : 0))
    implicitHeight: Math.max(label.implicitHeight, glyphSize)

    Row {
        id: row
        spacing: root.spacing
        anchors.verticalCenter: parent.verticalCenter
        x: Math.max(0, (root.width - Math.min(root.implicitWidth, root.width)) / 2)
        Rectangle {
            id: dotMark
            visible: root.dot
            anchors.verticalCenter: parent.verticalCenter
            width: Math.max(6, Math.round(root.fontSize * 0.55))
            height: width
            radius: width / 2
            color: root.color
        }
        Spinner {
            visible: root.busy
            anchors.verticalCenter: parent.verticalCenter
            size: root.markSize
            lineWidth: Math.max(1.6, root.markSize / 8)
            color: root.color
        }
        DrawnCheck {
            visible: root.done
            anchors.verticalCenter: parent.verticalCenter
            size: root.markSize
            color: root.color
            drawn: root.done
        }
        Glyph {
            visible: root.showGlyph
            anchors.verticalCenter: parent.verticalCenter
            symbol: root.symbol
            size: root.glyphSize
            color: root.color
        }
        UiText {
            id: label
            visible: root.text !== ""
            anchors.verticalCenter: parent.verticalCenter
            width: Math.max(0, Math.min(implicitWidth, root.width - root.lead))
            text: root.text
            color: root.color
            font.pixelSize: root.fontSize
            font.weight: root.weight
            font.underline: root.underline
        }
    }
}
