import Sorrelin
import QtQuick
import QtQuick.Templates as T

// A small on/off switch in amber. It shows `checked` as its owner holds it: a click asks for
// the other state through `toggled(on)` and the owner decides, so a switch on something that
// may fail (a login item that cannot be written) never shows a wish as done.
T.AbstractButton {
    id: root
    property bool on: false
    property string tip: ""
    signal toggled(bool on)

    implicitWidth: 34
    implicitHeight: 20
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    checkable: false
    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: on
    Accessible.name: text !== "" ? text : tip

    onClicked: toggled(!on)
    Keys.onSpacePressed: toggled(!on)

    background: Rectangle {
        radius: height / 2
        color: !root.enabled ? Palette.track : root.on ? Palette.amber : root.hovered ? Palette.panelStrokeHover : Palette.chipStroke
        border.width: root.visualFocus ? 1 : 0
        border.color: Palette.textSoft
        Behavior on color { ColorAnimation { duration: Motion.quick.duration } }
        Rectangle {
            width: parent.height - 4
            height: width
            radius: width / 2
            y: 2
            x: root.on ? parent.width - width - 2 : 2
            color: root.on ? Palette.onAmber : Palette.text2
            Behavior on x { enabled: Motion.animate; NumberAnimation { duration: Motion.snappy.duration; easing: Motion.snappy.easing } }
        }
    }
    contentItem: Item {}
    Tip { text: root.tip; shown: root.hovered && root.tip !== "" }
}
