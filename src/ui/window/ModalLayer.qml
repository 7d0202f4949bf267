import Sorrelin
import QtQuick

// A dialog over the window: a dimming colour behind that takes every click (and calls
// `dismissed` when `dismissable`), and the content centred in front, coming in with a small
// rise. A layer that is not dismissable can only be left through its own buttons.
Item {
    id: root
    property bool shown: false
    property bool dismissable: true
    default property alias content: holder.data

    signal dismissed()

    visible: shown || fade.running
    opacity: shown ? 1 : 0
    Behavior on opacity { NumberAnimation { id: fade; duration: Motion.quick.duration; easing: Motion.quick.easing } }

    Rectangle {
        anchors.fill: parent
        color: Qt.rgba(0.03, 0.03, 0.05, 0.62)
        MouseArea {
            anchors.fill: parent
            hoverEnabled: true
            acceptedButtons: Qt.AllButtons
            onClicked: if (root.dismissable) root.dismissed()
            onWheel: wheel => wheel.accepted = true
        }
    }
    Item {
        id: holder
        anchors.centerIn: parent
        width: childrenRect.width
        height: childrenRect.height
        scale: root.shown ? 1 : 0.96
        Behavior on scale { NumberAnimation { duration: Motion.snappy.duration; easing: Motion.snappy.easing } }
    }
    Keys.onEscapePressed: if (root.dismissable) root.dismissed()
}
