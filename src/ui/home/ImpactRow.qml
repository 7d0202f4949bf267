import Sorrelin
import QtQuick
import QtQuick.Layouts

// What a piece of advice gives back: the resource, a figure and a bar of the present state
// with the part that would come back marked.
RowLayout {
    id: root
    // {label, figure, segments, total} from the tab's words.
    property var impact: ({})

    spacing: Metrics.gapWide
    UiText {
        Layout.preferredWidth: 130
        text: root.impact.label || ""
        color: Palette.text3
        font.pixelSize: Metrics.small
    }
    StackedBar {
        Layout.fillWidth: true
        segments: root.impact.segments || []
        total: root.impact.total || 0
        lineWidth: 8
    }
    UiText {
        objectName: "impactFigure"
        Layout.minimumWidth: 64
        horizontalAlignment: Text.AlignRight
        text: root.impact.figure || ""
        font.weight: Font.DemiBold
    }
}
