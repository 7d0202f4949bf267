import Sorrelin
import QtQuick

// The Week tab, until its screen lands.
Placeholder { title: "Week" }
