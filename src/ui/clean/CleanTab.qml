import Sorrelin
import QtQuick
import QtQuick.Layouts

// What the last scan found, in its three tiers, with the footer that clears what is ticked.
Item {
    id: root
    readonly property AppModel model: App.model
    readonly property bool scanned: model !== null && !!model.lastScan
    readonly property bool firstScan: model !== null && model.isScanning && !scanned

    objectName: "cleanTab"

    Flickable {
        id: scroll
        objectName: "cleanScroll"
        anchors { left: parent.left; right: parent.right; top: parent.top; bottom: footer.top }
        contentHeight: column.implicitHeight + 2 * Metrics.padWide
        clip: true
        boundsBehavior: Flickable.StopAtBounds

        ColumnLayout {
            id: column
            x: Metrics.padWide + 6
            y: Metrics.padWide
            width: scroll.width - 2 * x
            spacing: Metrics.pad

            CleanHeader { Layout.fillWidth: true; firstScan: root.firstScan }
            ReportBanner {
                Layout.fillWidth: true
                visible: root.model !== null && !!root.model.report && !root.model.cleanSummary
                         && root.model.report.source !== "window"
            }
            UpdatingBar { Layout.fillWidth: true; visible: root.model !== null && root.model.isScanning && root.scanned }
            ScanningView { Layout.fillWidth: true; visible: root.firstScan }
            Repeater {
                model: 3
                delegate: TierSection {
                    required property int index
                    Layout.fillWidth: true
                    tier: index
                    firstScan: root.firstScan
                }
            }
        }
    }

    CleanFooter {
        id: footer
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
    }
}
