import Sorrelin
import QtQuick
import QtQuick.Layouts

// One way the tray item can look: the item as it would stand, and the style's name. The
// choice in force is outlined in amber.
Rectangle {
    id: root
    property string styleId: ""
    property string title: ""
    property bool chosen: false
    signal chose()

    objectName: "choice-" + styleId
    implicitHeight: 76
    implicitWidth: 150
    radius: Metrics.radius
    color: Palette.sunken
    border.width: chosen ? 2 : 1
    border.color: chosen ? Palette.amber : hover.hovered ? Palette.panelStrokeHover : Palette.panelStroke
    Accessible.role: Accessible.RadioButton
    Accessible.checkable: true
    Accessible.checked: chosen
    Accessible.name: title

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 10
        spacing: 8
        TrayItemPreview {
            Layout.alignment: Qt.AlignHCenter
            styleId: root.styleId
        }
        UiText {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            text: root.title
            color: root.chosen ? Palette.amberText : Palette.text2
            font.pixelSize: Metrics.small
            font.weight: Font.Medium
        }
    }
    HoverHandler { id: hover; cursorShape: Qt.PointingHandCursor }
    TapHandler { onTapped: root.chose() }
}
