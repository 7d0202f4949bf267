import Sorrelin
import QtQuick

// A small burst of sparkles at a success, from the middle of the item outwards. Call
// `burst()`; nothing shows with reduced motion or in pictures.
Item {
    id: root
    property color color: Palette.amberText
    property int count: 8
    property real reach: 34
    property real progress: 0

    Accessible.ignored: true

    function burst() {
        if (!Motion.animate) return;
        fly.restart();
    }

    NumberAnimation {
        id: fly
        target: root
        property: "progress"
        from: 0
        to: 1
        duration: Motion.ms(0.7)
        easing.type: Easing.OutCubic
    }

    Repeater {
        model: root.count
        delegate: Glyph {
            required property int index
            readonly property real angle: (index / root.count) * 2 * Math.PI + (index % 2) * 0.3
            readonly property real distance: root.reach * (index % 2 === 0 ? 1 : 0.7) * root.progress
            visible: root.progress > 0 && root.progress < 1
            symbol: "sparkle"
            size: index % 2 === 0 ? 12 : 9
            color: root.color
            opacity: 1 - root.progress
            x: root.width / 2 + Math.cos(angle) * distance - width / 2
            y: root.height / 2 + Math.sin(angle) * distance - height / 2
            scale: 0.6 + 0.6 * (1 - Math.abs(root.progress - 0.4))
        }
    }
}
