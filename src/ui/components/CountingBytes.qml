import Sorrelin
import QtQuick

// A byte figure that counts up to `value` as it appears (and to each new value), worded by the
// core's formatting at every step. With reduced motion and in pictures it shows the figure at
// once.
UiText {
    id: root
    property real value: 0
    property string prefix: ""
    property real shown: Motion.animate ? 0 : value

    text: prefix + Fmt.bytes(shown)
    Accessible.name: prefix + Fmt.bytes(value)

    onValueChanged: count()
    Component.onCompleted: count()
    function count() {
        if (!Motion.animate) { counter.stop(); shown = value; return; }
        counter.from = shown;
        counter.to = value;
        counter.restart();
    }
    NumberAnimation {
        id: counter
        target: root
        property: "shown"
        duration: Motion.ms(0.9)
        easing.type: Easing.OutCubic
    }
}
