import Sorrelin
import QtQuick

// Why a piece of advice stands where it stands: its reason's words, symbol and colours, from
// the advice model. `reason` is a name ("slow", "memory", "disk", "wait", "snoozed") or its
// number; an unknown one shows nothing.
Chip {
    id: root
    property var reason: ""
    property bool showIcon: true
    readonly property var look: Looks.reason(reason)

    visible: look.label !== undefined
    text: look.label !== undefined ? look.label : ""
    symbol: showIcon && look.symbol !== undefined ? look.symbol : ""
    fg: look.fg !== undefined ? look.fg : Palette.text2
    bg: look.bg !== undefined ? look.bg : Palette.count
    border.width: 0
}
