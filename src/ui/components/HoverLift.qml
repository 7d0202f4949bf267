import Sorrelin
import QtQuick

// A card rising a little under the pointer. Use it as a transform of the card:
//     transform: HoverLift { hovered: hover.hovered }
Translate {
    property bool hovered: false
    property real lift: 2
    y: hovered && Motion.animate ? -lift : 0
    Behavior on y { NumberAnimation { duration: Motion.hover.duration; easing: Motion.hover.easing } }
}
