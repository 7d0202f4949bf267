import Sorrelin
import QtQuick
import QtQuick.Layouts

// What is ticked and what clearing it does, with the button that asks to clear it. Pressing
// it with nothing ticked nudges the words and shakes the row instead.
Rectangle {
    id: root
    readonly property AppModel model: App.model
    property bool nudge: false
    readonly property var words: CleanWords.footer(model ? model.selectedItems : [], nudge)
    readonly property bool anything: model !== null && model.selectedItems.length > 0

    objectName: "cleanFooter"
    implicitHeight: 66
    color: Palette.footer
    onAnythingChanged: if (anything) nudge = false

    Rectangle { anchors { left: parent.left; right: parent.right; top: parent.top } height: 1; color: Palette.toolbarLine }

    RowLayout {
        id: body
        anchors { fill: parent; leftMargin: Metrics.padWide + 6; rightMargin: Metrics.padWide + 6 }
        spacing: Metrics.pad
        transform: Shake { id: shake }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2
            UiText {
                objectName: "footerFirst"
                Layout.fillWidth: true
                text: root.words.first
                font.pixelSize: Metrics.emphasis + 1
                font.weight: Font.DemiBold
            }
            UiText {
                objectName: "footerSecond"
                Layout.fillWidth: true
                text: root.words.second
                color: root.nudge ? Palette.amberText : Palette.text3
                font.pixelSize: Metrics.small
            }
        }
        PrimaryButton {
            objectName: "cleanButton"
            text: root.anything ? "Clear " + Fmt.bytes(root.model.tickedTotal) : "Clear"
            symbol: "custom.broom"
            enabled: root.model !== null && !root.model.isCleaning
            onClicked: {
                if (!root.anything) {
                    root.nudge = true;
                    shake.start();
                    return;
                }
                root.model.confirming = true;
            }
        }
    }
}
