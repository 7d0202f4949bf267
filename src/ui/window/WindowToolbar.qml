import Sorrelin
import QtQuick

// The toolbar above every tab: the title with how the last scan stands, the tabs, the
// activity pill and the rescan button. The tabs stay centred on the window unless the sides
// need the room.
Rectangle {
    id: root
    readonly property AppModel model: App.model

    implicitHeight: 58
    color: Palette.toolbar

    Rectangle {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: 1
        color: Palette.toolbarLine
    }

    // ToolbarTitle: goes home.
    Item {
        id: title
        objectName: "toolbarTitle"
        anchors { left: parent.left; leftMargin: Metrics.padWide - 4; verticalCenter: parent.verticalCenter }
        width: Math.min(titleRow.implicitWidth + 8, 220)
        height: 40
        Accessible.role: Accessible.Button
        Accessible.name: "Sorrelin, go to Home"
        Accessible.onPressAction: root.model.go(0)

        Rectangle {
            anchors.fill: parent
            radius: Metrics.radius
            color: titleHover.hovered ? Palette.hover : "transparent"
        }
        Row {
            id: titleRow
            x: 4
            anchors.verticalCenter: parent.verticalCenter
            spacing: 10
            Rectangle {
                width: 28
                height: 28
                radius: 8
                anchors.verticalCenter: parent.verticalCenter
                gradient: Gradient {
                    GradientStop { position: 0; color: Palette.amberTop }
                    GradientStop { position: 1; color: Palette.amberBottom }
                }
                Glyph { anchors.centerIn: parent; symbol: "custom.broom"; size: 18; color: Palette.onAmber }
            }
            Column {
                anchors.verticalCenter: parent.verticalCenter
                spacing: 1
                UiText {
                    text: "Sorrelin"
                    font.pixelSize: Metrics.emphasis
                    font.weight: Font.DemiBold
                }
                UiText {
                    objectName: "subtitle"
                    width: Math.min(implicitWidth, 170)
                    text: root.model ? WindowWords.subtitle(root.model.isCleaning, root.model.isScanning, root.model.lastScan) : ""
                    color: root.model && (root.model.isCleaning || root.model.isScanning) ? Palette.amberText : Palette.text3
                    font.pixelSize: Metrics.caption
                }
            }
        }
        HoverHandler { id: titleHover; cursorShape: Qt.PointingHandCursor }
        TapHandler { onTapped: root.model.go(0) }
    }

    // ToolbarTabs.
    SegmentedTabs {
        id: tabs
        objectName: "toolbarTabs"
        readonly property real centred: (root.width - width) / 2
        x: Math.max(title.x + title.width + Metrics.gapWide,
                    Math.min(centred, side.x - Metrics.gapWide - width))
        anchors.verticalCenter: parent.verticalCenter
        items: root.model ? root.model.tabs.map(t => t.title) : []
        selection: root.model ? root.model.tab : 0
        onActivated: index => root.model.go(index)
    }

    Row {
        id: side
        anchors { right: parent.right; rightMargin: Metrics.padWide - 4; verticalCenter: parent.verticalCenter }
        spacing: Metrics.gap
        ActivityPill { anchors.verticalCenter: parent.verticalCenter }
        ToolbarRescan { anchors.verticalCenter: parent.verticalCenter }
    }
}
