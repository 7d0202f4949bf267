import Sorrelin
import QtQuick

// The main tabs: a sunken track with the chosen tab raised on it; the raised part slides to a
// new choice. `items` are titles (or {title, dot}); `dot` marks the tab at that index as
// wanting attention; `widths`, when given, fixes each tab's width. Emits `activated(index)`.
Rectangle {
    id: root
    property var items: []
    property int selection: 0
    property int dot: -1
    property var widths: []
    property int fontSize: Metrics.body
    property real tabHeight: 30
    property real padding: 3

    signal activated(int index)

    implicitHeight: tabHeight + 2 * padding
    implicitWidth: row.implicitWidth + 2 * padding
    radius: Metrics.radius + 1
    color: Palette.sunken
    border.width: 1
    border.color: Palette.line
    Accessible.role: Accessible.PageTabList

    function titleAt(i) { const it = items[i]; return typeof it === "string" ? it : (it && it.title ? it.title : ""); }
    function dotAt(i) { const it = items[i]; return i === dot || (it && typeof it === "object" && it.dot === true); }

    Rectangle {
        id: raised
        readonly property Item current: repeater.count > root.selection && root.selection >= 0 ? repeater.itemAt(root.selection) : null
        visible: current !== null
        x: current ? current.x + root.padding : 0
        y: root.padding
        width: current ? current.width : 0
        height: root.tabHeight
        radius: Metrics.radius - 1
        color: Palette.chip
        border.width: 1
        border.color: Palette.chipStroke
        Behavior on x { NumberAnimation { duration: Motion.snappy.duration; easing: Motion.snappy.easing } }
        Behavior on width { NumberAnimation { duration: Motion.snappy.duration; easing: Motion.snappy.easing } }
    }

    Row {
        id: row
        x: root.padding
        y: root.padding
        Repeater {
            id: repeater
            model: root.items.length
            delegate: Item {
                id: tab
                required property int index
                readonly property bool chosen: index === root.selection
                objectName: "tab-" + root.titleAt(index)
                implicitWidth: root.widths.length > index && root.widths[index] > 0 ? root.widths[index] : label.implicitWidth + 30
                width: implicitWidth
                height: root.tabHeight
                Accessible.role: Accessible.PageTab
                Accessible.name: root.titleAt(index)
                Accessible.selected: chosen
                Accessible.onPressAction: root.activated(index)

                Rectangle {
                    anchors.fill: parent
                    radius: Metrics.radius - 1
                    color: hover.hovered && !tab.chosen ? Palette.hover : "transparent"
                }
                UiText {
                    id: label
                    anchors.centerIn: parent
                    width: Math.min(implicitWidth, parent.width - 16)
                    text: root.titleAt(tab.index)
                    font.pixelSize: root.fontSize
                    font.weight: tab.chosen ? Font.DemiBold : Font.Medium
                    color: tab.chosen ? Palette.text : hover.hovered ? Palette.textSoft : Palette.text3
                    horizontalAlignment: Text.AlignHCenter
                    Behavior on color { ColorAnimation { duration: Motion.hover.duration } }
                }
                Rectangle {
                    visible: root.dotAt(tab.index)
                    width: 6
                    height: 6
                    radius: 3
                    color: Palette.amber
                    x: label.x + label.width + 4
                    y: label.y + 1
                }
                HoverHandler { id: hover }
                TapHandler { onTapped: root.activated(tab.index) }
            }
        }
    }
}
