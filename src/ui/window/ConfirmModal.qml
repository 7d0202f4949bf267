import Sorrelin
import QtQuick
import QtQuick.Layouts

// "Free 4.2 GB?": what a clean takes, split into what is deleted now and what goes to the
// Trash, each group with its rows, larger first.
Panel {
    id: root
    readonly property AppModel model: App.model
    readonly property var words: WindowWords.confirm(model ? model.selectedItems : [])
    // Long lists scroll inside the dialog rather than push its buttons off the window.
    property real maxHeight: 600

    objectName: "confirmModal"
    width: 480
    height: Math.min(maxHeight, body.implicitHeight + 2 * Metrics.padWide)
    color: Palette.panel
    border.color: Palette.panelStrokeHover

    ColumnLayout {
        id: body
        anchors.fill: parent
        anchors.margins: Metrics.padWide
        spacing: Metrics.pad

        RowLayout {
            spacing: Metrics.gapWide
            IconTile { symbol: "sparkle"; tint: Palette.amber; size: 40; Layout.alignment: Qt.AlignTop }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: 4
                UiText {
                    objectName: "confirmTitle"
                    Layout.fillWidth: true
                    text: root.words.title
                    font.pixelSize: Metrics.title + 2
                    font.weight: Font.DemiBold
                }
                UiText {
                    objectName: "confirmLine"
                    Layout.fillWidth: true
                    text: root.words.line
                    color: Palette.text2
                    wrapMode: Text.Wrap
                    elide: Text.ElideNone
                }
            }
        }

        Flickable {
            id: list
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredHeight: groups.implicitHeight
            Layout.minimumHeight: Math.min(groups.implicitHeight, 120)
            contentHeight: groups.implicitHeight
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            interactive: contentHeight > height

            Column {
                id: groups
                width: list.width
                spacing: Metrics.gapWide
                Repeater {
                    model: root.words.groups
                    delegate: Rectangle {
                        required property var modelData
                        objectName: "group-" + modelData.title
                        width: groups.width
                        height: groupColumn.implicitHeight + 2 * Metrics.gapWide
                        radius: Metrics.radius
                        color: Palette.sunken
                        border.width: 1
                        border.color: Palette.line

                        Column {
                            id: groupColumn
                            anchors.fill: parent
                            anchors.margins: Metrics.gapWide
                            spacing: 6
                            RowLayout {
                                width: parent.width
                                spacing: Metrics.gap
                                Glyph { symbol: modelData.symbol; color: Palette.named(modelData.colour); size: 16 }
                                UiText { text: modelData.title; font.weight: Font.DemiBold }
                                UiText {
                                    Layout.fillWidth: true
                                    text: modelData.detail
                                    color: Palette.text3
                                    font.pixelSize: Metrics.small
                                }
                                UiText {
                                    text: modelData.head
                                    color: Palette.text3
                                    font.pixelSize: Metrics.small
                                }
                            }
                            Repeater {
                                model: modelData.items
                                delegate: RowLayout {
                                    required property var modelData
                                    width: groupColumn.width
                                    spacing: Metrics.gap
                                    Item { implicitWidth: 16 }
                                    UiText {
                                        Layout.fillWidth: true
                                        text: modelData.name
                                        color: Palette.textSoft
                                        font.pixelSize: Metrics.small
                                    }
                                    UiText {
                                        text: modelData.sizeText
                                        color: Palette.text2
                                        font.pixelSize: Metrics.small
                                    }
                                }
                            }
                        }
                    }
                }
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: Metrics.gap
            Item { Layout.fillWidth: true }
            SecondaryButton {
                objectName: "confirmCancel"
                text: "Cancel"
                onClicked: root.model.confirming = false
            }
            PrimaryButton {
                objectName: "confirmFree"
                text: root.words.button
                onClicked: root.model.cleanSelected()
            }
        }
    }
}
