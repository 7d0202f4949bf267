import Sorrelin
import QtQuick
import QtQuick.Layouts

// One health tile: a label with its symbol, a status pill, a large value with its unit, a line
// on why, and a bar. Pressing it opens the tab that explains it.
Panel {
    id: root
    property string label: ""
    property string symbol: ""
    // {status, tone, value, unit, sub} from the tab's words.
    property var words: ({})
    property var segments: []
    property real total: 0
    readonly property color tone: Palette.named(words.tone || "slate")
    signal clicked()

    interactive: true
    implicitHeight: body.implicitHeight + 2 * Metrics.pad
    Accessible.role: Accessible.Button
    Accessible.name: label + ", " + (words.status || "")
    Accessible.onPressAction: clicked()

    ColumnLayout {
        id: body
        anchors { fill: parent; margins: Metrics.pad }
        spacing: Metrics.gap
        RowLayout {
            Layout.fillWidth: true
            spacing: 6
            Glyph { symbol: root.symbol; size: 15; color: Palette.text2 }
            UiText { Layout.fillWidth: true; text: root.label; color: Palette.text2; font.weight: Font.Medium }
            Chip {
                objectName: "status"
                text: root.words.status || ""
                fg: Qt.lighter(root.tone, 1.2)
                bg: Qt.rgba(root.tone.r, root.tone.g, root.tone.b, 0.14)
                border.width: 0
            }
        }
        RowLayout {
            Layout.fillWidth: true
            spacing: 6
            UiText {
                objectName: "value"
                text: root.words.value || ""
                font.pixelSize: Metrics.display - 4
                font.weight: Font.DemiBold
            }
            UiText {
                Layout.fillWidth: true
                Layout.alignment: Qt.AlignBaseline
                text: root.words.unit || ""
                color: Palette.text3
                font.pixelSize: Metrics.small
            }
        }
        UiText {
            objectName: "sub"
            Layout.fillWidth: true
            text: root.words.sub || ""
            color: Palette.text2
            font.pixelSize: Metrics.small
        }
        StackedBar {
            Layout.fillWidth: true
            segments: root.segments
            total: root.total
            lineWidth: 6
        }
    }
    TapHandler { onTapped: root.clicked() }
}
