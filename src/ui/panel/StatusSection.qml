import Sorrelin
import QtQuick
import QtQuick.Layouts

// Whether the computer is slow now, and by which apps.
PanelSection {
    id: root
    readonly property var status: { void (App.model ? App.model.vitals : 0); return PanelView.statusOf(App.model); }
    objectName: "section-status"

    RowLayout {
        Layout.fillWidth: true
        spacing: Metrics.gap
        LabelRow {
            objectName: "status"
            symbol: root.status.symbol ?? ""
            text: root.status.words ?? ""
            color: Palette.named(root.status.tone ?? "text2")
            weight: Font.DemiBold
        }
        UiText {
            objectName: "names"
            Layout.fillWidth: true
            visible: text !== ""
            text: root.status.names ?? ""
            color: Palette.text2
        }
    }
}
