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
    border.width: 1
    border.color: interactive && hover.hovered ? Palette.panelStrokeHover : Palette.panelStroke
    Behavior on color { ColorAnimation { duration: Motion.hover.duration } }
    Behavior on border.color { ColorAnimation { duration: Motion.hover.duration } }

    HoverHandler { id: hover; enabled: root.interactive }
}
