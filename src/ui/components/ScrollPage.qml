import Sorrelin
import QtQuick
import QtQuick.Controls.Basic as Basic

// A tab's content that scrolls when it is taller than the window, with the design's margins.
// Children go into a column the width of the page.
Flickable {
    id: root
    default property alias content: column.data
    property real margin: Metrics.padWide + 6
    property real spacing: Metrics.pad + 2

    clip: true
    contentWidth: width
    contentHeight: column.implicitHeight + 2 * margin
    boundsBehavior: Flickable.StopAtBounds
    Basic.ScrollBar.vertical: Basic.ScrollBar { policy: root.contentHeight > root.height ? Basic.ScrollBar.AsNeeded : Basic.ScrollBar.AlwaysOff }

    Column {
        id: column
        x: root.margin
        y: root.margin
        width: root.width - 2 * root.margin
        spacing: root.spacing
    }
}
