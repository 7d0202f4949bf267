import Sorrelin
import QtQuick

// The surface of cards and panels: the panel colour with a fine outline that brightens under
// the pointer when `interactive`.
Rectangle {
    id: root
    property bool interactive: false
    readonly property bool hovered: hover.hovered

    radius: Metrics.radiusLarge
    color: interactive && hover.hovered ? Palette.panelHover : Palette.panel
    // The outline glides through a property of the panel's own: a Behavior on the grouped
    // `border.color` sits on the pen object, and Qt 6.4 can run it after the pen's panel is gone.
    property color stroke: interactive && hover.hovered ? Palette.panelStrokeHover : Palette.panelStroke
    border.width: 1
    border.color: stroke
    Behavior on color { ColorAnimation { duration: Motion.hover.duration } }
    Behavior on stroke { ColorAnimation { duration: Motion.hover.duration } }

    HoverHandler { id: hover; enabled: root.interactive }
}
