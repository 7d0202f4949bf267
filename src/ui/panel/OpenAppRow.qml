import Sorrelin
import QtQuick
import QtQuick.Layouts

// The button that opens the main window.
PanelSection {
    objectName: "section-openApp"
    SecondaryButton {
        objectName: "openApp"
        Layout.fillWidth: true
        text: "Open Sorrelin"
        symbol: "macwindow"
        onClicked: {
            App.model.showWindow(-1);
            Desktop.closePanel();
        }
    }
}
