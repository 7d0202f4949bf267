import Sorrelin
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

// The one main action of a screen: amber, with dark text. `done` shows the finished state,
// `busy` a spinner beside the words while the work runs.
T.Button {
    id: root
    property bool fullWidth: false
    property bool done: false
    property bool busy: false
    property string symbol: ""
    property string tip: ""

    Layout.fillWidth: fullWidth
    implicitHeight: Metrics.primaryHeight
    implicitWidth: Math.max(implicitHeight * 2, implicitContentWidth + leftPadding + rightPadding)
    leftPadding: 18
    rightPadding: 18
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    font.pixelSize: Metrics.body
    font.weight: Font.DemiBold
    Accessible.role: Accessible.Button
    Accessible.name: text

    readonly property color ink: done ? Palette.greenText : enabled ? Palette.onAmber : Palette.text4

    scale: pressed && !done ? 0.97 : 1
    Behavior on scale { NumberAnimation { duration: Motion.press.duration; easing: Motion.press.easing } }

    contentItem: LabelRow {
        text: root.text
        symbol: root.symbol
        busy: root.busy && !root.done
        done: root.done
        color: root.ink
        fontSize: root.font.pixelSize
        weight: Font.DemiBold
        spacing: 7
    }

    background: Rectangle {
        radius: Metrics.radius
        // Disabled, it goes flat and grey: an amber that cannot be pressed would still call.
        color: Palette.chip
        gradient: root.enabled || root.done ? live : undefined
        Gradient {
            id: live
            GradientStop { position: 0; color: root.done ? Qt.rgba(0.25, 0.83, 0.55, 0.16) : root.hovered && root.enabled ? Qt.lighter(Palette.amberTop, 1.05) : Palette.amberTop }
            GradientStop { position: 1; color: root.done ? Qt.rgba(0.25, 0.83, 0.55, 0.12) : root.hovered && root.enabled ? Qt.lighter(Palette.amberBottom, 1.05) : Palette.amberBottom }
        }
        border.width: root.done || root.visualFocus || !root.enabled ? 1 : 0
        border.color: root.done ? Qt.rgba(0.25, 0.83, 0.55, 0.35) : root.enabled ? Palette.text : Palette.chipStroke
        // a faint light along the top edge, as on a raised surface
        Rectangle {
            visible: !root.done && root.enabled
            anchors.fill: parent
            anchors.margins: 1
            radius: parent.radius - 1
            color: "transparent"
            border.width: 1
            border.color: Qt.rgba(1, 1, 1, 0.14)
        }
        Shine {
            anchors.fill: parent
            radius: parent.radius
            visible: !root.done && root.enabled
            trigger: root.hovered
        }
    }

    Tip { objectName: "tip"; text: root.tip; shown: root.hovered }
}
