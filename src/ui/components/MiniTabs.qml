import Sorrelin
import QtQuick

// A small switch between a few views ("Processor", "Memory"), in the look of the main tabs.
SegmentedTabs {
    fontSize: Metrics.small
    tabHeight: 22
    padding: 2
    radius: Metrics.radiusSmall + 2
}
