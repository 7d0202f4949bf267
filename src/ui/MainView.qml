import Sorrelin
import QtQuick
import QtQuick.Layouts

// A stand-in for the main window's content until the screens land: the tabs, the disk and a
// rescan. It holds no logic: everything it shows and does is the model's.
Rectangle {
    id: root
    color: Palette.window
    implicitWidth: 1060
    implicitHeight: 760

    Rectangle {
        id: toolbar
        anchors { left: parent.left; right: parent.right; top: parent.top }
        height: 56
        color: Palette.toolbar
        Rectangle { anchors { left: parent.left; right: parent.right; bottom: parent.bottom } height: 1; color: Palette.toolbarLine }

        RowLayout {
            anchors { fill: parent; leftMargin: Metrics.padWide; rightMargin: Metrics.padWide }
            spacing: Metrics.gapWide
            UiText { text: "Sorrelin"; font.pixelSize: Metrics.title; font.weight: Font.DemiBold }
            Item { Layout.fillWidth: true }
            SegmentedTabs {
                items: App.model.tabs.map(t => t.title)
                selection: App.model.tab
                onActivated: index => App.model.go(index)
            }
            Item { Layout.fillWidth: true }
            SecondaryButton {
                text: "Quit"
                visible: !Desktop.trayAvailable
                onClicked: Desktop.quit()
            }
            PrimaryButton {
                text: App.model.isScanning ? "Scanning" : "Scan again"
                busy: App.model.isScanning
                enabled: !App.model.isScanning
                onClicked: App.model.scan()
            }
        }
    }

    ColumnLayout {
        anchors { top: toolbar.bottom; left: parent.left; right: parent.right; margins: Metrics.padWide }
        spacing: Metrics.gap
        UiText {
            text: App.model.tabs[App.model.tab].title
            font.pixelSize: Metrics.heading
            font.weight: Font.DemiBold
        }
        UiText {
            text: Fmt.bytes(App.model.disk.available) + " free on " + App.model.disk.name
            color: App.model.isLow ? Palette.amberText : Palette.text2
        }
    }
}
