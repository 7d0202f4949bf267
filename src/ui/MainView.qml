import Sorrelin
import QtQuick

// The one window of the program: the toolbar, the tab chosen, the dialogs over it and the
// toast on top. It reads the model and forwards clicks to it; the hosting window is the
// desktop's, which reads `minimumWidth` and `minimumHeight` and shows and hides it. Appearing
// and disappearing tell the model (skipped while pictures are made).
Rectangle {
    id: root
    readonly property AppModel model: App.model
    readonly property int minimumWidth: 1000
    readonly property int minimumHeight: 700
    // The picture harness and tests may set what is shown without a window around it.
    readonly property bool windowShown: Window.window !== null && Window.window.visible

    objectName: "mainView"
    implicitWidth: 1060
    implicitHeight: 760
    color: Palette.window

    function appeared() {
        if (Motion.rendering || !model) return;
        model.setLive("window", true);
        model.scanIfStale(600);
        model.refreshProjects(false);
        model.refreshGrowthIfStale(43200);
        WindowSnapshot.takeIfAsked(Window.window);
    }
    function disappeared() {
        if (Motion.rendering || !model) return;
        model.setLive("window", false);
    }
    onWindowShownChanged: windowShown ? appeared() : disappeared()
    Component.onCompleted: if (windowShown) appeared()

    WindowToolbar {
        id: toolbar
        anchors { left: parent.left; right: parent.right; top: parent.top }
        z: 1
    }

    // The content: the tab chosen, coming in from the side the tab change points to.
    Item {
        id: content
        objectName: "content"
        anchors { left: parent.left; right: parent.right; top: toolbar.bottom; bottom: parent.bottom }
        clip: true

        Loader {
            id: page
            objectName: "page"
            anchors.fill: parent
            readonly property int tab: root.model ? root.model.tab : 0
            sourceComponent: [homeTab, storageTab, cleanTab, projectsTab, speedTab, weekTab][Math.max(0, Math.min(5, tab))]
            onLoaded: {
                if (!Motion.animate) return;
                slide.from = (root.model && !root.model.tabForward ? -1 : 1) * 24;
                entrance.restart();
            }
            transform: Translate { id: shift }
            ParallelAnimation {
                id: entrance
                NumberAnimation { id: slide; target: shift; property: "x"; to: 0; duration: Motion.smooth.duration; easing: Motion.smooth.easing }
                NumberAnimation { target: page; property: "opacity"; from: 0; to: 1; duration: Motion.enter.duration; easing: Motion.enter.easing }
            }
        }
        Component { id: homeTab; HomeTab {} }
        Component { id: storageTab; StorageTab {} }
        Component { id: cleanTab; CleanTab {} }
        Component { id: projectsTab; ProjectsTab {} }
        Component { id: speedTab; SpeedTab {} }
        Component { id: weekTab; WeekTab {} }
    }

    ModalLayer {
        objectName: "confirmLayer"
        anchors.fill: parent
        z: 2
        shown: root.model !== null && root.model.confirming
        onDismissed: root.model.confirming = false
        ConfirmModal { maxHeight: root.height - 80 }
    }
    ModalLayer {
        objectName: "cleanLayer"
        anchors.fill: parent
        z: 3
        // A clean shown on a sheet while it runs, then its summary until "Done".
        shown: root.model !== null && ((!!root.model.cleanProgress && root.model.cleanProgress.showsSheet)
                                       || !!root.model.cleanSummary)
        dismissable: false
        CleanSheet { maxHeight: root.height - 80 }
    }
    ModalLayer {
        objectName: "restartLayer"
        anchors.fill: parent
        z: 4
        shown: root.model !== null && root.model.restartSheet
        onDismissed: root.model.restartSheet = false
        RestartModal {}
    }
    ModalLayer {
        objectName: "settingsLayer"
        anchors.fill: parent
        z: 5
        shown: root.model !== null && root.model.settingsOpen
        onDismissed: root.model.settingsOpen = false
        SettingsSheet {}
    }

    ToastView {
        // Above the Clean tab's footer, which holds its own words and button.
        anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom
                  bottomMargin: root.model && root.model.tab === 2 ? 82 : 22 }
        z: 6
        maxWidth: Math.min(640, root.width - 80)
    }
}
