import Sorrelin
import QtQuick

// The Speed tab, until its screen lands.
Placeholder { title: "Speed" }
