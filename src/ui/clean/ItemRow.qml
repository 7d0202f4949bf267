import Sorrelin
import QtQuick
import QtQuick.Layouts
import QtQuick.Controls.Basic as Controls

// One item: its tick, icon, name, note and place, the first badge that applies and its size,
// with a faint bar that gives the row its weight against the largest of its tier.
Item {
    id: root
    readonly property AppModel model: App.model
    // The delegate's roles; read here so each binding follows its own role.
    property var row: null
    property int rowIndex: 0
    property real maxSize: 1
    property color tint: Palette.amber
    readonly property var item: row ? {
        "id": row.id, "name": row.name, "size": row.size, "locked": row.locked, "lockedReason": row.lockedReason,
        "refillNote": row.refillNote, "isOpen": row.isOpen, "cacheKind": row.cacheKind, "lastUsed": row.lastUsed,
        "removal": row.removal, "recentLabel": row.recentLabel, "ticked": row.ticked
    } : ({})
    readonly property var badge: CleanWords.badge(item)

    objectName: "row-" + (row ? row.id : "")
    height: 54
    Accessible.role: Accessible.CheckBox
    Accessible.name: (row ? row.name : "") + ", " + CleanWords.rowState(item)
    Accessible.checkable: !item.locked
    Accessible.checked: item.ticked === true

    HoverWash { anchors.fill: parent; hovered: hover.hovered }
    Rectangle {
        visible: root.rowIndex > 0
        anchors { left: parent.left; right: parent.right; top: parent.top; leftMargin: Metrics.pad; rightMargin: Metrics.pad }
        height: 1
        color: Palette.line
    }

    RowLayout {
        anchors { fill: parent; leftMargin: Metrics.pad; rightMargin: Metrics.pad }
        spacing: Metrics.gapWide

        CheckBox {
            objectName: "tick"
            on: root.item.ticked === true
            locked: root.item.locked === true
            tint: root.tint
            label: root.row ? root.row.name : ""
            onToggled: root.model.toggle(root.row.id)
        }
        IconTile {
            symbol: root.row ? root.row.symbol : ""
            tint: Palette.named(root.row ? root.row.tint : "")
            size: 32
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2
            UiText {
                objectName: "name"
                Layout.fillWidth: true
                text: root.row ? root.row.name : ""
                font.weight: Font.Medium
                color: root.item.locked ? Palette.text2 : Palette.text
            }
            UiText {
                Layout.fillWidth: true
                text: root.row ? [root.row.shortNote, root.row.shortLocation].filter(s => s && s.length > 0).join(" · ") : ""
                color: Palette.text3
                font.pixelSize: Metrics.small
                elide: Text.ElideMiddle
            }
        }
        Tag {
            objectName: "badge"
            visible: root.badge.text !== undefined
            Layout.maximumWidth: 190
            text: root.badge.text || ""
            symbol: root.badge.symbol || ""
            style: root.badge.style || "plain"
            tip: root.badge.tip || ""
        }
        ColumnLayout {
            Layout.fillWidth: false
            Layout.preferredWidth: 120
            spacing: 5
            UiText {
                objectName: "size"
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignRight
                text: Fmt.bytes(root.row ? root.row.size : 0)
                font.weight: Font.DemiBold
                color: root.item.locked ? Palette.text3 : Palette.text
            }
            Rectangle {
                Layout.fillWidth: true
                implicitHeight: 3
                radius: 1.5
                color: Palette.track
                Rectangle {
                    anchors.right: parent.right
                    height: parent.height
                    radius: parent.radius
                    width: Math.max(2, parent.width * Math.min(1, (root.row ? root.row.size : 0) / Math.max(1, root.maxSize)))
                    color: Qt.rgba(root.tint.r, root.tint.g, root.tint.b, root.item.locked ? 0.3 : 0.75)
                }
            }
        }
    }

    HoverHandler { id: hover }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: if (root.row && root.row.reveal) menu.popup()
    }
    Controls.Menu {
        id: menu
        Controls.MenuItem {
            text: CleanWords.revealLabel(root.row ? root.row.name : "")
            onTriggered: Reveal.show(root.row.reveal)
        }
    }
}
