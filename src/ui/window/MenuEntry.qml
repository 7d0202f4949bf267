import Sorrelin
import QtQuick

// One line of the toolbar's menu: its words on the left, its keys on the right.
Rectangle {
    id: root
    property string text: ""
    property string keys: ""
    signal chosen()

    implicitWidth: Math.max(180, label.implicitWidth + shortcut.implicitWidth + 3 * Metrics.gapWide)
    implicitHeight: 30
    width: parent ? Math.max(parent.width, implicitWidth) : implicitWidth
    radius: Metrics.radiusSmall
    color: hover.hovered ? Palette.hover : "transparent"
    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.onPressAction: root.chosen()

    UiText {
        id: label
        anchors { left: parent.left; leftMargin: Metrics.gapWide - 2; verticalCenter: parent.verticalCenter }
        text: root.text
        font.pixelSize: Metrics.body
    }
    UiText {
        id: shortcut
        anchors { right: parent.right; rightMargin: Metrics.gapWide - 2; verticalCenter: parent.verticalCenter }
        text: root.keys
        color: Palette.text3
        font.pixelSize: Metrics.small
    }
    HoverHandler { id: hover; cursorShape: Qt.PointingHandCursor }
    TapHandler { onTapped: root.chosen() }
}
