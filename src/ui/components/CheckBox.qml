import Sorrelin
import QtQuick

// A tick box, also half-ticked. A `locked` box can't be changed: it shows a lock, ignores
// clicks and keys, and says so to assistive tools. Clicking an unlocked box emits `toggled`;
// the owner decides what `on` becomes.
Item {
    id: root
    property bool on: false
    property bool partial: false
    property bool locked: false
    property color tint: Palette.amber
    property real size: 18
    // What assistive tools read as the box's name.
    property string label: ""

    signal toggled()

    implicitWidth: size
    implicitHeight: size
    activeFocusOnTab: !locked
    opacity: enabled ? 1 : 0.5

    Accessible.role: Accessible.CheckBox
    Accessible.name: label
    Accessible.checkable: !locked
    Accessible.checked: on
    Accessible.description: locked ? "kept" : on ? "ticked" : partial ? "partly ticked" : "not ticked"
    Accessible.onToggleAction: root.request()
    Accessible.onPressAction: root.request()

    function request() {
        if (!locked && enabled) toggled();
    }

    readonly property bool filled: !locked && (on || partial)

    Rectangle {
        id: box
        anchors.fill: parent
        radius: Math.round(root.size * 0.28)
        color: root.locked ? Palette.sunken : root.filled ? root.tint : "transparent"
        border.width: root.filled ? 0 : 1.5
        border.color: root.locked ? Palette.panelStroke
                    : hover.hovered ? Qt.rgba(root.tint.r, root.tint.g, root.tint.b, 0.9) : Palette.text4
        Behavior on color { ColorAnimation { duration: Motion.quick.duration; easing: Motion.quick.easing } }

        scale: tap.pressed && !root.locked ? 0.88 : 1
        Behavior on scale { NumberAnimation { duration: Motion.press.duration; easing: Motion.press.easing } }

        DrawnCheck {
            anchors.centerIn: parent
            visible: root.on && !root.locked
            size: root.size * 0.72
            lineWidth: Math.max(1.6, root.size / 9)
            color: Palette.onAmber
            drawn: root.on
        }
        Rectangle {
            anchors.centerIn: parent
            visible: root.partial && !root.on && !root.locked
            width: root.size * 0.5
            height: Math.max(2, Math.round(root.size / 9))
            radius: height / 2
            color: Palette.onAmber
        }
        Glyph {
            anchors.centerIn: parent
            visible: root.locked
            symbol: "lock.fill"
            size: root.size * 0.66
            color: Palette.text4
        }
    }
    Rectangle {
        visible: root.activeFocus
        anchors.fill: parent
        anchors.margins: -3
        radius: box.radius + 3
        color: "transparent"
        border.width: 1.5
        border.color: Qt.rgba(root.tint.r, root.tint.g, root.tint.b, 0.7)
    }

    HoverHandler { id: hover; cursorShape: root.locked ? Qt.ForbiddenCursor : Qt.PointingHandCursor }
    TapHandler {
        id: tap
        // A little margin around the box: small targets are hard to hit.
        margin: 4
        onTapped: root.request()
    }
    Keys.onSpacePressed: root.request()
}
