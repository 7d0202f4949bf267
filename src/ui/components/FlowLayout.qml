import Sorrelin
import QtQuick

// Rows of chips that wrap to the width they are given, `spacing` apart across and down.
Flow {
    spacing: Metrics.gap - 2
    flow: Flow.LeftToRight
}
