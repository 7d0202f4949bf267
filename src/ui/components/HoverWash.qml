import Sorrelin
import QtQuick

// A faint light laid over a row or card under the pointer. Fill the parent and bind `hovered`.
Rectangle {
    property bool hovered: false
    color: Palette.hover
    opacity: hovered ? 1 : 0
    Behavior on opacity { NumberAnimation { duration: Motion.hover.duration; easing: Motion.hover.easing } }
}
