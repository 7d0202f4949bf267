import Sorrelin
import QtQuick

// A sheen that sweeps across its parent's shape once each time `trigger` turns true, or
// again and again while `looping`. It is a gradient inside a rounded rectangle, so it never
// spills past the corners. Nothing moves with reduced motion or in pictures.
Rectangle {
    id: root
    property bool trigger: false
    property bool looping: false
    property real band: 0.22    // width of the light, as a share of the item
    property real strength: 0.22 // its brightness at the middle
    property real position: -1  // where the light stands, -band..1+band; off outside

    color: "transparent"
    visible: position > -band && position < 1 + band
    gradient: Gradient {
        orientation: Gradient.Horizontal
        GradientStop { position: Math.max(0, Math.min(1, root.position - root.band)); color: Qt.rgba(1, 1, 1, 0) }
        GradientStop { position: Math.max(0, Math.min(1, root.position)); color: Qt.rgba(1, 1, 1, root.strength) }
        GradientStop { position: Math.max(0, Math.min(1, root.position + root.band)); color: Qt.rgba(1, 1, 1, 0) }
    }

    function sweep() {
        if (!Motion.animate) return;
        once.restart();
    }
    onTriggerChanged: if (trigger) sweep()

    NumberAnimation {
        id: once
        target: root
        property: "position"
        from: -root.band
        to: 1 + root.band
        duration: Motion.ms(0.75)
        easing.type: Easing.InOutQuad
    }
    // Animations tick whether or not anyone sees them, and every tick redraws the window:
    // the loop runs only while its shape is on a shown window.
    readonly property bool seen: parent !== null && parent.visible && Window.visibility !== Window.Hidden
                                 && Window.visibility !== Window.Minimized
    readonly property alias sweeping: loop.running
    SequentialAnimation {
        id: loop
        running: root.looping && Motion.animate && root.width > 0 && root.seen
        loops: Animation.Infinite
        NumberAnimation { target: root; property: "position"; from: -root.band; to: 1 + root.band; duration: Motion.ms(1.3); easing.type: Easing.InOutSine }
        PauseAnimation { duration: Motion.ms(0.35) }
    }
}
