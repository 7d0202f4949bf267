import Sorrelin
import QtQuick
import QtQuick.Templates as T

// A tooltip in the design's look. Put one inside a control and bind `shown` to its hover:
//     Tip { text: "Scan again."; shown: button.hovered }
T.ToolTip {
    id: root
    property bool shown: false
    // Where the bubble stands beside its parent: "top", "bottom", "leading", "trailing".
    property string edge: "bottom"

    visible: shown && text !== ""
    delay: Metrics.tipDelay
    timeout: -1
    padding: 0
    margins: 6
    closePolicy: T.Popup.NoAutoClose

    readonly property real gapOut: 6
    x: parent ? (edge === "leading" ? -width - gapOut
                 : edge === "trailing" ? parent.width + gapOut
                 : (parent.width - width) / 2) : 0
    y: parent ? (edge === "top" ? -height - gapOut
                 : edge === "bottom" ? parent.height + gapOut
                 : (parent.height - height) / 2) : 0

    contentItem: Item {}
    background: TipBubble { text: root.text }
    implicitWidth: background.implicitWidth
    implicitHeight: background.implicitHeight

    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Motion.quick.duration; easing: Motion.quick.easing }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Motion.quick.duration; easing: Motion.quick.easing }
    }
}
