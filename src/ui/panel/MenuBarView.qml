import Sorrelin
import QtQuick
import QtQuick.Layouts

// The tray panel: the sections the user chose, in the chosen order, and a footer with the
// login switch and the way out. Drawn as a `preview` in the settings sheet it takes no
// clicks and does not make the monitor sample faster.
Rectangle {
    id: root
    property bool preview: false

    readonly property var model: App.model
    readonly property var sections: App.prefs ? App.prefs.visible : []

    objectName: "menuBarView"
    implicitWidth: 340
    implicitHeight: column.implicitHeight + 2
    color: Palette.panel
    radius: Metrics.radiusLarge
    border.width: 1
    border.color: Palette.panelStroke
    clip: true

    readonly property var kinds: ({
        freeSpace: freeSpace, status: status, vitals: vitals, nextStep: nextStep,
        quickClean: quickClean, storage: storage, openApp: openApp
    })
    Component { id: freeSpace; FreeSpaceSection {} }
    Component { id: status; StatusSection {} }
    Component { id: vitals; VitalsSection {} }
    Component { id: nextStep; NextStepCard {} }
    Component { id: quickClean; QuickCleanRow {} }
    Component { id: storage; StorageRow {} }
    Component { id: openApp; OpenAppRow {} }

    // The panel on screen makes the monitor sample every few seconds; the view is the one that
    // says so, as the main window does for itself. A preview or a picture is not the panel.
    readonly property bool windowShown: Window.window !== null && Window.window.visible
    property bool live: false
    function goLive(on) {
        if (preview || Motion.rendering || !model || on === live) return;
        live = on;
        model.setLive("menu", on);
    }
    onWindowShownChanged: goLive(windowShown)
    Component.onCompleted: goLive(windowShown)
    Component.onDestruction: goLive(false)

    ColumnLayout {
        id: column
        x: 1
        y: 1
        width: parent.width - 2
        spacing: 0

        Repeater {
            model: root.sections
            Loader {
                required property string modelData
                required property int index
                objectName: "slot-" + modelData
                Layout.fillWidth: true
                sourceComponent: root.kinds[modelData] ?? null
                onLoaded: item.first = index === 0
                onIndexChanged: if (item) item.first = index === 0
            }
        }

        ColumnLayout {
            visible: root.sections.length === 0
            Layout.fillWidth: true
            Layout.margins: 14
            spacing: Metrics.gap
            UiText {
                objectName: "allOff"
                Layout.fillWidth: true
                text: "Every section is switched off. Customize brings them back."
                color: Palette.text3
                wrapMode: Text.Wrap
                elide: Text.ElideNone
            }
            LinkButton {
                objectName: "customize"
                text: "Customize"
                symbol: "slider.horizontal.3"
                onClicked: {
                    root.model.openSettings();
                    Desktop.closePanel();
                }
            }
        }

        Rectangle {
            Layout.fillWidth: true
            implicitHeight: footer.implicitHeight + 20
            color: Palette.footer
            radius: Metrics.radiusLarge - 1
            Rectangle { width: parent.width; height: 1; color: Palette.line }
            Rectangle { y: 1; width: parent.width; height: parent.radius; color: parent.color }

            RowLayout {
                id: footer
                anchors.fill: parent
                anchors.leftMargin: 14
                anchors.rightMargin: 10
                spacing: Metrics.gap
                Toggle {
                    id: login
                    objectName: "login"
                    on: root.model ? root.model.loginItemOn : false
                    text: "Open at login"
                    onToggled: on => root.model.setLoginItem(on)
                }
                UiText {
                    Layout.fillWidth: true
                    text: "Open at login"
                    color: Palette.text2
                    font.pixelSize: Metrics.small
                    TapHandler { onTapped: login.toggled(!login.on) }
                }
                LinkButton {
                    objectName: "quit"
                    text: "Quit"
                    color: Palette.text2
                    size: Metrics.small
                    onClicked: Desktop.quit()
                }
            }
        }
    }

    // A preview shows the panel as it will stand; it is not the panel.
    MouseArea {
        anchors.fill: parent
        visible: root.preview
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        preventStealing: true
    }
}
