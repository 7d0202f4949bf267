import Sorrelin
import QtQuick
import QtQuick.Layouts

// "Apps": each installed app with what it keeps in the home folder, biggest first, eight at
// first and up to thirty on request. No Trash button here: apps leave through the system's
// own software tools.
Panel {
    id: root
    property bool more: false

    readonly property var model: App.model
    readonly property bool busy: model ? model.storageBusy : false
    readonly property real largest: {
        void (model ? model.storageShown : null);
        const list = model ? model.storageApps : null;
        return list && list.count > 0 ? list.get(0).total : 0;
    }

    objectName: "apps"
    implicitHeight: column.implicitHeight + 2 * Metrics.pad

    RowFilter {
        id: rows
        source: root.model ? root.model.storageApps : null
        limit: root.more ? 30 : 8
    }

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: Metrics.pad
        spacing: 2

        RowLayout {
            Layout.fillWidth: true
            Layout.bottomMargin: Metrics.gap
            spacing: Metrics.gap
            UiText {
                text: "Apps"
                font.pixelSize: Metrics.title
                font.weight: Font.DemiBold
            }
            UiText {
                objectName: "count"
                visible: rows.matching > 0
                text: rows.matching + (rows.matching === 1 ? " app" : " apps")
                color: Palette.text3
            }
            InfoTip { text: "Each app with what it keeps in your home folder. Apps you have not opened for months are worth a look." }
            Item { Layout.fillWidth: true }
        }

        UiText {
            objectName: "empty"
            visible: rows.count === 0
            Layout.topMargin: 6
            Layout.bottomMargin: 6
            text: root.busy ? "Measuring apps…" : "No apps measured."
            color: Palette.text3
        }

        Repeater {
            model: rows
            AppRow {
                required property var model
                Layout.fillWidth: true
                name: model.name
                path: model.path
                appBytes: model.appBytes
                dataBytes: model.dataBytes
                total: model.total
                maximum: root.largest
                usage: StorageView.usageOf(App.model, model.lastUsed)
                stale: usage.startsWith("Not opened")
            }
        }

        LinkButton {
            objectName: "showMore"
            visible: rows.matching > 8
            Layout.topMargin: 4
            text: root.more ? "Show fewer" : "Show " + (Math.min(rows.matching, 30) - 8) + " more"
            onClicked: root.more = !root.more
        }
    }
}
