import Sorrelin
import QtQuick

// The settings sheet, until its screen lands: a card with a way out.
Panel {
    implicitWidth: 420
    implicitHeight: 180

    Placeholder {
        anchors.fill: parent
        anchors.bottomMargin: 40
        title: "Settings"
    }
    SecondaryButton {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Metrics.pad
        text: "Done"
        onClicked: App.model.settingsOpen = false
    }
}
