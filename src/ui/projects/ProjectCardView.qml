import Sorrelin
import QtQuick
import QtQuick.Layouts

// One project: what runs inside, what it weighs, and the one action that fits: stop what was
// left behind, or free what is idle; a lock while something runs in it.
Panel {
    id: root
    // The row of ProjectsState.cards, with its roles by name.
    property var card
    // The view's own state: a stop asked for and not answered yet.
    property bool stopping: false

    interactive: true
    objectName: "card-" + card.name
    implicitHeight: body.implicitHeight + 2 * Metrics.pad

    // A stop ends with the cards built again (or a toast that nothing stopped).
    Connections {
        target: App.model
        function onToastChanged() { root.stopping = false }
        function onProjectsChanged() { root.stopping = false }
    }

    component Stat: ColumnLayout {
        property string symbol
        property string title
        property string value
        property real fraction
        property color tint
        spacing: 5
        RowLayout {
            Layout.fillWidth: true
            spacing: 5
            Glyph { symbol: parent.parent.symbol; size: 13; color: Palette.text3 }
            UiText { text: parent.parent.title; color: Palette.text3; font.pixelSize: Metrics.small }
            Item { Layout.fillWidth: true }
            UiText { text: parent.parent.value; font.weight: Font.DemiBold; font.pixelSize: Metrics.small }
        }
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: 5
            radius: 2.5
            color: Palette.track
            Rectangle {
                height: parent.height
                radius: parent.radius
                width: parent.width * Math.max(0, Math.min(1, parent.parent.fraction))
                color: parent.parent.tint
            }
        }
    }

    ColumnLayout {
        id: body
        anchors.fill: parent
        anchors.margins: Metrics.pad
        spacing: Metrics.gap + 2

        // Head: name, folder and status.
        RowLayout {
            Layout.fillWidth: true
            spacing: Metrics.gapWide
            IconTile { symbol: "chevron.left.forwardslash.chevron.right"; tint: root.card.tag === "Running" ? Palette.green : Palette.slate; size: 34 }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: 1
                RowLayout {
                    Layout.fillWidth: true
                    spacing: 6
                    UiText {
                        Layout.fillWidth: implicitWidth > width
                        Layout.maximumWidth: implicitWidth
                        text: root.card.name
                        font.pixelSize: Metrics.emphasis
                        font.weight: Font.DemiBold
                    }
                    InfoTip { visible: root.card.olderTip !== ""; text: root.card.olderTip; size: 13 }
                    Item { Layout.fillWidth: true }
                }
                UiText {
                    Layout.fillWidth: true
                    text: root.card.path
                    color: Palette.text4
                    font.pixelSize: Metrics.caption
                    elide: Text.ElideMiddle
                }
            }
        }
        RowLayout {
            Layout.fillWidth: true
            spacing: Metrics.gap
            Tag {
                visible: root.card.tag !== ""
                text: root.card.tag
                symbol: root.card.tagSymbol
                style: root.card.tag === "Running" ? "ok" : "plain"
            }
            Tag {
                visible: root.card.leftoverTag !== ""
                text: root.card.leftoverTag
                symbol: "custom.ghost"
                style: "warn"
            }
            UiText {
                objectName: "status"
                Layout.fillWidth: true
                text: root.card.status
                color: Palette.text2
                font.pixelSize: Metrics.small
                wrapMode: Text.WordWrap
                elide: Text.ElideNone
                maximumLineCount: 2
            }
        }
        FlowLayout {
            Layout.fillWidth: true
            visible: root.card.chips.length > 0
            Repeater {
                model: root.card.chips
                delegate: Chip {
                    required property var modelData
                    text: modelData.text
                    symbol: modelData.symbol
                    live: modelData.live
                }
            }
        }
        RowLayout {
            Layout.fillWidth: true
            spacing: Metrics.pad
            Stat {
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                symbol: "memorychip"
                title: "Memory"
                value: root.card.memory
                fraction: root.card.memoryFraction
                tint: Palette.memText
            }
            Stat {
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                symbol: "shippingbox"
                title: "Build folders"
                value: root.card.build
                fraction: root.card.buildFraction
                tint: Palette.amber
            }
        }
        // The apps of a group.
        ColumnLayout {
            Layout.fillWidth: true
            visible: root.card.apps.length > 0
            spacing: 2
            Repeater {
                model: root.card.apps
                delegate: RowLayout {
                    required property var modelData
                    Layout.fillWidth: true
                    spacing: Metrics.gap
                    Rectangle { width: 6; height: 6; radius: 3; color: modelData.running ? Palette.green : Palette.idleDot }
                    UiText { Layout.fillWidth: true; text: modelData.name; font.pixelSize: Metrics.small }
                    UiText { text: modelData.running ? "Running" : ""; color: Palette.greenText; font.pixelSize: Metrics.caption }
                    UiText { text: modelData.build; color: Palette.text3; font.pixelSize: Metrics.small; Layout.preferredWidth: 64; horizontalAlignment: Text.AlignRight }
                }
            }
        }
        // The action row.
        RowLayout {
            Layout.fillWidth: true
            visible: root.card.stopLabel !== "" || root.card.freeLabel !== "" || root.card.locked
            spacing: Metrics.gap
            Item { Layout.fillWidth: true }
            SecondaryButton {
                objectName: "stop"
                visible: root.card.stopLabel !== ""
                text: root.card.stopLabel
                symbol: "custom.ghost"
                tone: "warn"
                busy: root.stopping
                enabled: !root.stopping
                tip: root.card.stopTip
                onClicked: {
                    root.stopping = true
                    App.model.stopProjectLeftovers(root.card.id)
                }
            }
            SecondaryButton {
                objectName: "free"
                visible: root.card.freeLabel !== ""
                text: root.card.armed ? "Click again to free" : root.card.freeLabel
                symbol: root.card.armed ? "custom.broom" : ""
                armed: root.card.armed
                tip: root.card.freeTip
                onClicked: App.model.armFreeProject(root.card.id)
            }
            SecondaryButton {
                objectName: "locked"
                visible: root.card.locked && root.card.freeLabel === ""
                symbol: "lock.fill"
                enabled: false
                tip: "Sorrelin never deletes build folders while something runs in the project."
                // a disabled button gets no hover of its own: the tip reads from the area over it
                HoverHandler { id: lockHover }
                Tip { text: parent.tip; shown: lockHover.hovered }
            }
        }
    }
}
