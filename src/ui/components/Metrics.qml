pragma Singleton
import Sorrelin
import QtQuick

// Sizes of the design language: type, corners and spacing. The palette and the motions live
// in Palette and Motion; these are the rest of the look.
QtObject {
    // type, in pixels
    readonly property int caption: 11
    readonly property int small: 12
    readonly property int body: 13
    readonly property int emphasis: 14
    readonly property int title: 16
    readonly property int heading: 22
    readonly property int display: 30

    // corners
    readonly property int radiusSmall: 6
    readonly property int radius: 9
    readonly property int radiusLarge: 14

    // spacing
    readonly property int gapTight: 4
    readonly property int gap: 8
    readonly property int gapWide: 12
    readonly property int pad: 16
    readonly property int padWide: 22

    // controls
    readonly property int buttonHeight: 32
    readonly property int primaryHeight: 36
    readonly property int chipHeight: 22
    readonly property int tipDelay: 450
    readonly property int tipWidth: 280
}
