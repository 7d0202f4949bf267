import Sorrelin
import QtQuick
import QtQuick.Layouts

// Every folder the user codes in, with what runs inside it and what it weighs.
Item {
    id: root
    readonly property AppModel model: App.model

    ProjectsState { id: projects; model: root.model }

    ScrollPage {
        anchors.fill: parent

        PageHeading {
            width: parent.width
            title: "Projects"
            subtitle: "Every folder you code in, with what runs inside it and what it weighs."
        }
        FlowLayout {
            objectName: "summary"
            width: parent.width
            Repeater {
                model: projects.summary
                delegate: Chip {
                    required property var modelData
                    text: modelData.text
                    symbol: modelData.symbol
                    live: modelData.live
                    style: modelData.live ? "ok" : "plain"
                }
            }
        }

        // Before the first list, and without any project.
        Panel {
            objectName: "empty"
            visible: projects.content !== "cards"
            width: parent.width
            implicitHeight: 180
            ColumnLayout {
                anchors.centerIn: parent
                spacing: Metrics.gapWide
                Item {
                    Layout.alignment: Qt.AlignHCenter
                    implicitWidth: 56
                    implicitHeight: 56
                    Spinner { anchors.centerIn: parent; visible: projects.content === "finding"; size: 26 }
                    IconTile {
                        anchors.centerIn: parent
                        visible: projects.content === "none"
                        symbol: "chevron.left.forwardslash.chevron.right"
                        tint: Palette.slate
                        size: 48
                    }
                }
                UiText {
                    objectName: "emptyText"
                    Layout.alignment: Qt.AlignHCenter
                    text: projects.content === "finding" ? "Finding your projects" : "No projects found in your folders yet."
                    color: Palette.text2
                }
            }
        }

        SharedInsight {
            objectName: "insight"
            visible: projects.insight !== null && projects.insight !== undefined && projects.content === "cards"
            width: parent.width
            insight: projects.insight
        }

        // Cards two to a row; a card with three apps or more takes a whole row, and ends a
        // pending pair, which then stands alone.
        Flow {
            id: grid
            objectName: "cards"
            visible: projects.content === "cards"
            width: parent.width
            spacing: Metrics.gapWide
            Repeater {
                model: projects.cards
                delegate: ProjectCardView {
                    required property var model
                    card: model
                    width: model.wide ? grid.width : (grid.width - grid.spacing) / 2
                }
            }
        }
    }
}
