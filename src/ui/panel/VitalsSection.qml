import Sorrelin
import QtQuick
import QtQuick.Layouts

// Memory and swap on the disk, in two rows.
PanelSection {
    id: root
    readonly property var vitals: { void (App.model ? App.model.vitals : 0); return PanelView.vitalsOf(App.model); }
    objectName: "section-vitals"

    component VitalRow: RowLayout {
        property string symbol
        property string label
        property string value
        property string detail
        property bool warn: false
        Layout.fillWidth: true
        spacing: Metrics.gap
        Glyph { symbol: parent.symbol; size: 15; color: parent.warn ? Palette.amberText : Palette.text3 }
        UiText { text: parent.label; color: Palette.text2; Layout.fillWidth: true }
        UiText { text: parent.value; color: parent.warn ? Palette.amberText : Palette.text; font.weight: Font.DemiBold }
        UiText { visible: text !== ""; text: parent.detail; color: Palette.text3 }
    }

    VitalRow {
        objectName: "memory"
        symbol: "memorychip"
        label: "Memory"
        value: root.vitals.memory ? root.vitals.memory.words : ""
        detail: root.vitals.memory ? root.vitals.memory.detail : ""
        warn: root.vitals.memory ? root.vitals.memory.warn : false
    }
    VitalRow {
        objectName: "swap"
        symbol: "internaldrive"
        label: "Swap on disk"
        value: root.vitals.swap ? root.vitals.swap.words : ""
        warn: root.vitals.swap ? root.vitals.swap.warn : false
    }
}
