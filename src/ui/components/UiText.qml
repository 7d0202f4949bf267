import Sorrelin
import QtQuick

// Text of the window: Inter (the application font) in the palette's text colour, cut with an
// ellipsis rather than spilling past its width.
Text {
    color: Palette.text
    font.pixelSize: Metrics.body
    elide: Text.ElideRight
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter
}
