import Sorrelin
import QtQuick
import QtQuick.Layouts

// The settings sheet: what the tray item shows, which sections the panel holds and in which
// order, and whether Sorrelin opens at login, beside a live preview of the panel. Every change
// takes effect and is saved at once; "Done" only closes the sheet.
Panel {
    id: root
    readonly property var model: App.model
    readonly property var prefs: App.prefs

    objectName: "settingsSheet"
    implicitWidth: 860
    implicitHeight: Math.max(content.implicitHeight, preview.implicitHeight + 60) + 2 * Metrics.padWide
    color: Palette.window

    RowLayout {
        anchors.fill: parent
        anchors.margins: Metrics.padWide
        spacing: Metrics.padWide

        ColumnLayout {
            id: content
            Layout.fillWidth: true
            Layout.alignment: Qt.AlignTop
            spacing: Metrics.pad

            RowLayout {
                spacing: Metrics.gapWide
                IconTile { symbol: "slider.horizontal.3"; tint: Palette.amber; size: 40 }
                ColumnLayout {
                    spacing: 2
                    UiText { text: "Settings"; font.pixelSize: Metrics.heading; font.weight: Font.DemiBold }
                    UiText { text: "Shape the menu bar to show what you care about."; color: Palette.text3 }
                }
            }

            UiText {
                Layout.topMargin: Metrics.gap
                text: "Menu bar item"
                font.pixelSize: Metrics.emphasis
                font.weight: Font.DemiBold
            }
            RowLayout {
                objectName: "labelPicker"
                Layout.fillWidth: true
                spacing: Metrics.gap
                Repeater {
                    model: root.prefs ? root.prefs.labelStyles : []
                    LabelChoice {
                        required property var modelData
                        Layout.fillWidth: true
                        styleId: modelData.id
                        title: modelData.title
                        chosen: root.prefs.labelStyle === modelData.id
                        onChose: root.prefs.labelStyle = modelData.id
                    }
                }
            }

            RowLayout {
                Layout.topMargin: Metrics.gap
                spacing: Metrics.gap
                UiText { text: "Menu bar panel"; font.pixelSize: Metrics.emphasis; font.weight: Font.DemiBold }
                UiText { text: "Drag to reorder"; color: Palette.text4; font.pixelSize: Metrics.small }
            }
            SectionList { Layout.fillWidth: true }

            Rectangle { Layout.fillWidth: true; Layout.topMargin: Metrics.gap; implicitHeight: 1; color: Palette.line }
            RowLayout {
                Layout.fillWidth: true
                spacing: Metrics.gapWide
                Toggle {
                    id: login
                    objectName: "login"
                    on: root.model ? root.model.loginItemOn : false
                    text: "Open at login"
                    tip: "Starts Sorrelin in the menu bar when you log in, without the window"
                    onToggled: on => root.model.setLoginItem(on)
                }
                UiText {
                    text: "Open at login"
                    color: Palette.text2
                    TapHandler { onTapped: login.toggled(!login.on) }
                }
                Item { Layout.fillWidth: true }
                LinkButton {
                    objectName: "reset"
                    text: "Reset to default"
                    enabled: root.prefs ? !root.prefs.isDefault : false
                    onClicked: root.prefs.reset()
                }
                PrimaryButton {
                    objectName: "done"
                    text: "Done"
                    onClicked: root.model.settingsOpen = false
                }
            }
        }

        ColumnLayout {
            id: preview
            Layout.alignment: Qt.AlignTop
            Layout.preferredWidth: 300
            spacing: Metrics.gap
            UiText { text: "Preview"; font.pixelSize: Metrics.emphasis; font.weight: Font.DemiBold }
            TrayItemPreview { objectName: "trayPreview"; Layout.alignment: Qt.AlignRight }
            Item {
                Layout.fillWidth: true
                Layout.preferredHeight: panel.implicitHeight * panel.scale
                MenuBarView {
                    id: panel
                    objectName: "panelPreview"
                    preview: true
                    width: implicitWidth
                    height: implicitHeight
                    scale: 300 / implicitWidth
                    transformOrigin: Item.TopLeft
                }
            }
        }
    }
}
