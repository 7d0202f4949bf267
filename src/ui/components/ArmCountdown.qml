import Sorrelin
import QtQuick

// The thin bar in an armed button. It runs out over the arming time, which is the model's
// real timer, so it is never slowed by SORRELIN_SLOWMO; with reduced motion it stands full.
Item {
    id: root
    property bool running: false
    property int duration: 4000
    property color color: Palette.amber
    // What is left of the arming time, 1 to 0.
    property real fraction: 1
    readonly property bool counting: countdown.running

    implicitHeight: 2
    visible: running
    Accessible.ignored: true

    function restart() {
        countdown.stop();
        fraction = 1;
        if (running && !Motion.reduced && !Motion.rendering) countdown.start();
    }
    onRunningChanged: restart()
    Component.onCompleted: restart()

    NumberAnimation {
        id: countdown
        target: root
        property: "fraction"
        from: 1
        to: 0
        duration: root.duration
        easing.type: Easing.Linear
    }
    Rectangle {
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        height: parent.height
        width: parent.width * root.fraction
        radius: height / 2
        color: root.color
    }
}
