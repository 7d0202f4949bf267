import Sorrelin
import QtQuick
import QtQuick.Layouts

// Nothing needs the user: what was fixed today, if anything, and that Sorrelin keeps watching.
Panel {
    id: root
    readonly property AppModel model: App.model
    readonly property var done: model ? model.doneToday : []

    objectName: "allClearCard"
    implicitHeight: body.implicitHeight + 2 * Metrics.padWide
    RowLayout {
        id: body
        anchors { fill: parent; margins: Metrics.padWide }
        spacing: Metrics.pad
        Rectangle {
            Layout.alignment: Qt.AlignTop
            width: 44
            height: 44
            radius: 22
            color: Qt.rgba(0.25, 0.83, 0.55, 0.14)
            DrawnCheck { anchors.centerIn: parent; size: 22 }
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 6
            UiText { text: "Nothing needs you right now"; font.pixelSize: Metrics.title + 2; font.weight: Font.Bold }
            UiText {
                objectName: "allClearLine"
                Layout.fillWidth: true
                text: HomeWords.allClear(root.done.length)
                color: Palette.text2
                wrapMode: Text.Wrap
                elide: Text.ElideNone
            }
            Flow {
                Layout.fillWidth: true
                visible: root.done.length > 0
                spacing: Metrics.gap
                Repeater {
                    model: root.done
                    delegate: Chip { required property string modelData; text: modelData; symbol: "checkmark"; style: "ok" }
                }
            }
        }
    }
}
