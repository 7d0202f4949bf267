import Sorrelin
import QtQuick

// A small turning arc beside words that say what runs. Still with reduced motion and in
// pictures, where it stands as an arc of a third.
Item {
    id: root
    property real size: 16
    property real lineWidth: 2
    property color color: Palette.text2

    implicitWidth: size
    implicitHeight: size
    Accessible.role: Accessible.Animation
    Accessible.name: "Working"

    RingView {
        anchors.fill: parent
        lineWidth: root.lineWidth
        gap: 0
        track: Qt.rgba(root.color.r, root.color.g, root.color.b, 0.18)
        roundCaps: true
        segments: [{ id: "arc", value: 1, color: root.color }]
        total: 3
        RotationAnimation on rotation {
            running: Motion.animate && root.visible && root.Window.visibility !== Window.Hidden
                     && root.Window.visibility !== Window.Minimized
            from: 0
            to: 360
            duration: 800
            loops: Animation.Infinite
        }
    }
}
