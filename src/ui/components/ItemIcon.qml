import Sorrelin
import QtQuick

// An app's own icon when its desktop entry is known and has one, the symbol in a tile
// otherwise, also while the icon cannot be found.
Item {
    id: root
    property string symbol: ""
    property color tint: Palette.slate
    property string appPath: ""
    property real size: 30

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    readonly property string iconSource: appPath !== "" ? AppIcons.source(appPath) : ""
    readonly property bool hasIcon: iconSource !== "" && icon.status === Image.Ready

    Image {
        id: icon
        anchors.fill: parent
        visible: root.hasIcon
        source: root.iconSource
        sourceSize: Qt.size(Math.ceil(root.size * 2), Math.ceil(root.size * 2))
        fillMode: Image.PreserveAspectFit
        smooth: true
        mipmap: true
        asynchronous: false
        cache: true
    }
    IconTile {
        anchors.fill: parent
        visible: !root.hasIcon
        symbol: root.symbol
        tint: root.tint
        size: root.size
    }
}
