import Sorrelin
import QtQuick

// The message at the foot of the window, with its button when it has one. The pointer over it
// holds it there; leaving gives it two more seconds.
Rectangle {
    id: root
    readonly property AppModel model: App.model
    readonly property var toast: model ? model.toast : null
    // The last toast stays drawn while it fades out.
    property var shownToast: null
    onToastChanged: if (toast) shownToast = toast

    objectName: "toast"
    visible: opacity > 0
    opacity: toast ? 1 : 0
    Behavior on opacity { NumberAnimation { duration: Motion.quick.duration; easing: Motion.quick.easing } }
    transform: Translate {
        y: root.toast ? 0 : 12
        Behavior on y { NumberAnimation { duration: Motion.snappy.duration; easing: Motion.snappy.easing } }
    }

    implicitWidth: Math.min(maxWidth, row.implicitWidth + 32)
    implicitHeight: Math.max(44, label.implicitHeight + 22)
    property real maxWidth: 640
    radius: 14
    color: Palette.tipBg
    border.width: 1
    border.color: Palette.tipStroke
    Accessible.role: Accessible.AlertMessage
    Accessible.name: shownToast ? shownToast.text : ""

    readonly property string kind: shownToast ? shownToast.kind : "info"

    Row {
        id: row
        anchors.verticalCenter: parent.verticalCenter
        x: 16
        spacing: 10
        Glyph {
            anchors.verticalCenter: parent.verticalCenter
            symbol: WindowWords.toastSymbol(root.kind)
            size: 17
            color: root.kind === "ok" ? Palette.green : root.kind === "problem" ? Palette.orange : Palette.blueText
        }
        UiText {
            id: label
            objectName: "toastText"
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, root.maxWidth - 32 - 27 - (action.visible ? action.width + 10 : 0))
            text: root.shownToast ? root.shownToast.text : ""
            color: Palette.tipText
            wrapMode: Text.Wrap
            elide: Text.ElideNone
            maximumLineCount: 3
        }
        LinkButton {
            id: action
            objectName: "toastAction"
            anchors.verticalCenter: parent.verticalCenter
            visible: root.shownToast !== null && root.shownToast.action !== null && root.shownToast.action !== undefined
            text: visible ? root.shownToast.action : ""
            color: Palette.amberText
            weight: Font.DemiBold
            onClicked: root.model.runToastAction()
        }
    }
    HoverHandler {
        id: hover
        onHoveredChanged: if (root.toast && root.model) root.model.holdToast(hovered)
    }
}
