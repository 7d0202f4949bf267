import Sorrelin
import QtQuick
import QtQuick.Layouts

// The frame of one section of the tray panel: the section's content with the panel's inner
// margins, and a hairline above it unless it comes first.
ColumnLayout {
    id: root
    property bool first: false
    default property alias content: inner.data

    spacing: 0
    Rectangle {
        visible: !root.first
        Layout.fillWidth: true
        implicitHeight: 1
        color: Palette.line
    }
    ColumnLayout {
        id: inner
        Layout.fillWidth: true
        Layout.margins: 14
        spacing: Metrics.gap
    }
}
