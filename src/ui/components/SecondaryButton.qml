import Sorrelin
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

// Every action but the main one. `tone: "warn"` for a harsh one; `armed` shows a button that
// waits for its second press, with the arming countdown along its foot.
T.Button {
    id: root
    property bool fullWidth: false
    property string tone: "plain"
    property int fontSize: Metrics.body
    property bool armed: false
    property bool busy: false
    property string symbol: ""
    property string tip: ""
    property int armDuration: 4000

    Layout.fillWidth: fullWidth
    implicitHeight: Metrics.buttonHeight
    implicitWidth: Math.max(implicitHeight, implicitContentWidth + leftPadding + rightPadding)
    leftPadding: text === "" ? 0 : 13
    rightPadding: text === "" ? 0 : 13
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    font.pixelSize: fontSize
    font.weight: Font.Medium
    Accessible.role: Accessible.Button
    Accessible.name: text

    readonly property color ink: !enabled ? Palette.text5 : armed ? Palette.amberText : tone === "warn" ? Palette.orangeText : Palette.textChip

    scale: pressed ? 0.97 : 1
    Behavior on scale { NumberAnimation { duration: Motion.press.duration; easing: Motion.press.easing } }

    contentItem: LabelRow {
        text: root.text
        symbol: root.symbol
        busy: root.busy
        color: root.ink
        fontSize: root.fontSize
        weight: Font.Medium
    }

    background: Rectangle {
        radius: Metrics.radius - 1
        clip: true
        color: root.armed ? Qt.rgba(0.96, 0.73, 0.27, 0.12)
             : root.tone === "warn" ? Qt.rgba(1, 0.54, 0.36, root.hovered ? 0.14 : 0.09)
             : root.hovered && root.enabled ? Qt.lighter(Palette.chip, 1.12) : Palette.chip
        // Animated through a property of its own, as in Panel: not on the grouped border.
        property color stroke: root.armed ? Qt.rgba(0.96, 0.73, 0.27, 0.55)
                    : root.visualFocus ? Palette.textSoft
                    : root.tone === "warn" ? Qt.rgba(1, 0.54, 0.36, 0.32)
                    : root.hovered && root.enabled ? Palette.panelStrokeHover : Palette.chipStroke
        border.width: 1
        border.color: stroke
        Behavior on color { ColorAnimation { duration: Motion.hover.duration } }
        Behavior on stroke { ColorAnimation { duration: Motion.hover.duration } }

        ArmCountdown {
            objectName: "countdown"
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.leftMargin: parent.radius
            anchors.rightMargin: parent.radius
            anchors.bottomMargin: 3
            running: root.armed
            duration: root.armDuration
        }
    }

    Tip { objectName: "tip"; text: root.tip; shown: root.hovered }
}
