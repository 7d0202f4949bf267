import Sorrelin
import QtQuick
import QtQuick.Templates as T

// The toolbar's menu: "Settings…", and "Quit" where no tray holds the program, since closing
// the window leaves it running and nothing else could end it. Ctrl+, and Ctrl+Q do the same.
IconButton {
    id: root
    readonly property AppModel model: App.model
    readonly property bool offersQuit: !Desktop.trayAvailable

    objectName: "toolbarMenu"
    symbol: "ellipsis"
    size: Metrics.buttonHeight
    tip: "More"
    onClicked: menu.opened ? menu.close() : menu.open()

    function settings() {
        menu.close();
        if (root.model) root.model.openSettings();
    }
    function quit() {
        menu.close();
        Desktop.quit();
    }

    Shortcut { sequence: "Ctrl+,"; onActivated: root.settings() }
    Shortcut { sequence: "Ctrl+Q"; enabled: root.offersQuit; onActivated: root.quit() }

    T.Popup {
        id: menu
        objectName: "toolbarMenuPopup"
        // A template popup takes no size from its content by itself: without these it is
        // zero wide, its ground is not drawn and its right edge (and entries) hang past the
        // window's.
        implicitWidth: Math.max(implicitBackgroundWidth + leftInset + rightInset, contentWidth + leftPadding + rightPadding)
        implicitHeight: Math.max(implicitBackgroundHeight + topInset + bottomInset, contentHeight + topPadding + bottomPadding)
        x: root.width - width
        y: root.height + 6
        margins: 6
        padding: 4
        closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent

        background: Rectangle {
            radius: Metrics.radius
            color: Palette.tipBg
            border.color: Palette.tipStroke
            border.width: 1
        }
        contentItem: Column {
            spacing: 2
            MenuEntry { objectName: "menuSettings"; text: "Settings…"; keys: "Ctrl+,"; onChosen: root.settings() }
            MenuEntry { objectName: "menuQuit"; text: "Quit"; keys: "Ctrl+Q"; visible: root.offersQuit; onChosen: root.quit() }
        }
        enter: Transition {
            NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Motion.quick.duration; easing: Motion.quick.easing }
        }
    }
}
