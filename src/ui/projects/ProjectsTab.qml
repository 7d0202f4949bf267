import Sorrelin
import QtQuick

// The Projects tab, until its screen lands.
Placeholder { title: "Projects" }
