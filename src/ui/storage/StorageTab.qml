import Sorrelin
import QtQuick

// The Storage tab, until its screen lands.
Placeholder { title: "Storage" }
