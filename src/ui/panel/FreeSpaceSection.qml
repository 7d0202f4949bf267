import Sorrelin
import QtQuick
import QtQuick.Layouts

// The panel's head: how much is free, the disk bar with what a clean could give back, and
// when the disk fills at the pace of the last days.
PanelSection {
    id: root
    readonly property var model: App.model
    readonly property var forecast: { void (model ? [model.pace, model.disk] : 0); return PanelView.forecastOf(model); }

    objectName: "section-freeSpace"

    Item {
        Layout.fillWidth: true
        implicitHeight: heading.implicitHeight
        UiText {
            id: heading
            objectName: "heading"
            width: parent.width
            text: Fmt.bytes(root.model ? root.model.disk.available : 0) + " free" + (root.model && root.model.isScanning ? ", scanning" : "")
            font.pixelSize: Metrics.heading
            font.weight: Font.DemiBold
            color: root.model && root.model.isLow ? Palette.amberText : Palette.text
        }
        HoverHandler { id: headHover }
        Tip { text: "See what takes your space"; shown: headHover.hovered }
    }
    StackedBar {
        objectName: "bar"
        Layout.fillWidth: true
        lineWidth: 8
        segments: { void (root.model ? [root.model.disk, root.model.vitals, root.model.items.count] : 0); return PanelView.diskSegmentsOf(root.model); }
    }
    Item {
        Layout.fillWidth: true
        implicitHeight: forecastRow.implicitHeight
        LabelRow {
            id: forecastRow
            objectName: "forecast"
            anchors.left: parent.left
            width: Math.min(implicitWidth, parent.width)
            symbol: root.forecast.symbol ?? ""
            text: root.forecast.words ?? ""
            color: Palette.named(root.forecast.tone ?? "text3")
            fontSize: Metrics.small
        }
        HoverHandler { id: forecastHover; enabled: (root.forecast.tip ?? "") !== "" }
        Tip { text: root.forecast.tip ?? ""; shown: forecastHover.hovered }
    }
}
