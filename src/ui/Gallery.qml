import Sorrelin
import QtQuick
import QtQuick.Layouts

// Every control of the design language in its states, on three pages of the window's size.
// The tests draw it through the picture harness; a person looks at the pictures.
Rectangle {
    id: root
    property int page: 0
    color: Palette.window

    component Section: ColumnLayout {
        property string title: ""
        spacing: 10
        UiText {
            text: parent.title
            color: Palette.text3
            font.pixelSize: Metrics.caption
            font.weight: Font.DemiBold
            font.capitalization: Font.AllUppercase
            font.letterSpacing: 0.6
        }
    }

    Loader {
        anchors.fill: parent
        anchors.margins: 28
        sourceComponent: root.page === 0 ? actions : root.page === 1 ? charts : symbols
    }

    Component {
        id: actions
        GridLayout {
            columns: 2
            columnSpacing: 40
            rowSpacing: 30

            Section {
                title: "Primary"
                Layout.alignment: Qt.AlignTop
                Layout.preferredWidth: 480
                Layout.maximumWidth: 480
                RowLayout {
                    spacing: 10
                    PrimaryButton { text: "Free 4.2 GB" }
                    PrimaryButton { text: "Quitting"; busy: true }
                    PrimaryButton { text: "Done"; done: true }
                    PrimaryButton { text: "Free"; enabled: false }
                }
                PrimaryButton { text: "Do the 3 safe ones"; symbol: "sparkle"; fullWidth: true }
            }
            Section {
                title: "Secondary and links"
                Layout.alignment: Qt.AlignTop
                Layout.preferredWidth: 480
                Layout.maximumWidth: 480
                RowLayout {
                    spacing: 10
                    SecondaryButton { text: "Not now" }
                    SecondaryButton { text: "Stop 3 leftovers"; tone: "warn"; symbol: "custom.ghost" }
                    SecondaryButton { text: "Click again to quit"; armed: true }
                }
                FlowLayout {
                    Layout.preferredWidth: 480
                    spacing: 10
                    SecondaryButton { text: "Emptying the Trash"; busy: true }
                    SecondaryButton { text: "Measure"; fontSize: Metrics.small; symbol: "chart.pie" }
                    SecondaryButton { text: "Locked"; symbol: "lock.fill"; enabled: false }
                    LinkButton { text: "Why this first?" }
                    LinkButton { text: "Show how"; color: Palette.text2; symbol: "chevron.down" }
                    IconButton { symbol: "arrow.counterclockwise"; tip: "Scan again." }
                    IconButton { symbol: "slider.horizontal.3"; tip: "Settings" }
                }
            }
            Section {
                title: "Chips, tags and pills"
                Layout.alignment: Qt.AlignTop
                Layout.preferredWidth: 480
                Layout.maximumWidth: 480
                FlowLayout {
                    Layout.preferredWidth: 480
                    Chip { text: "You freed 2.1 GB today"; symbol: "checkmark"; style: "ok" }
                    Chip { text: "2 running"; live: true }
                    Chip { text: "Claude"; symbol: "sparkle" }
                    Chip { text: "Pages reload"; symbol: "arrow.clockwise"; style: "warn" }
                    Chip { text: "1.4 GB memory"; symbol: "memorychip" }
                    Tag { text: "In use"; symbol: "lock.fill" }
                    Tag { text: "Refills fast"; symbol: "arrow.clockwise"; style: "warn" }
                    Tag { text: "App removed"; symbol: "checkmark"; style: "ok" }
                    Tag { text: "Unused since Mar 4"; symbol: "moon.zzz" }
                    Tag { text: "To Trash"; symbol: "trash"; fg: Palette.purpleText; bg: Palette.named("purple", 0.14) }
                }
                RowLayout {
                    spacing: 8
                    StatusPill { text: "Running well"; symbol: "checkmark"; style: "ok" }
                    StatusPill { text: "Live"; symbol: "clock" }
                    StatusPill { text: "Scanning · 42%"; fraction: 0.42; live: true; style: "warn" }
                }
                FlowLayout {
                    Layout.preferredWidth: 480
                    ReasonTag { reason: "slow" }
                    ReasonTag { reason: "memory" }
                    ReasonTag { reason: "disk" }
                    ReasonTag { reason: "wait" }
                    ReasonTag { reason: "snoozed"; showIcon: false }
                    CountBadge { n: 7 }
                    CountBadge { n: 1234 }
                }
            }
            Section {
                title: "Tips"
                Layout.alignment: Qt.AlignTop
                Layout.preferredWidth: 480
                Layout.maximumWidth: 480
                RowLayout {
                    spacing: 10
                    UiText { text: "What can go"; font.weight: Font.DemiBold }
                    InfoTip { text: "Caches apps rebuild by themselves." }
                }
                TipBubble {
                    text: "The ring is your whole disk. Grey is apps and your files, striped is swap from memory, colour is what Sorrelin can clear, green is free."
                }
                TipBubble { text: "Scan again." }
            }
            Section {
                title: "Tick boxes"
                Layout.alignment: Qt.AlignTop
                Layout.preferredWidth: 480
                Layout.maximumWidth: 480
                RowLayout {
                    spacing: 16
                    CheckBox { label: "off" }
                    CheckBox { on: true; label: "on" }
                    CheckBox { partial: true; label: "partial" }
                    CheckBox { locked: true; label: "locked" }
                    CheckBox { on: true; tint: Palette.blue }
                    CheckBox { on: true; tint: Palette.purple }
                    CheckBox { on: true; size: 24 }
                    CheckBox { on: true; size: 14 }
                    CheckBox { on: true; enabled: false }
                }
            }
            Section {
                title: "A row as the screens will build it"
                Layout.alignment: Qt.AlignTop
                Layout.preferredWidth: 480
                Layout.maximumWidth: 480
                Panel {
                    Layout.fillWidth: true
                    implicitHeight: 58
                    interactive: true
                    RowLayout {
                        anchors.fill: parent
                        anchors.leftMargin: 14
                        anchors.rightMargin: 14
                        spacing: 12
                        CheckBox { on: true }
                        ItemIcon { symbol: "globe"; tint: Palette.browser; size: 30 }
                        ColumnLayout {
                            Layout.fillWidth: true
                            spacing: 2
                            UiText {
                                Layout.fillWidth: true
                                text: "A cache whose name goes on and on and on, far longer than any row can hold without cutting it short, as a name of three hundred characters would"
                                font.weight: Font.Medium
                            }
                            UiText {
                                Layout.fillWidth: true
                                text: "~/.cache/some-app · not used for 40 days"
                                color: Palette.text3
                                font.pixelSize: Metrics.small
                            }
                        }
                        Tag { text: "In use"; symbol: "lock.fill" }
                        UiText { text: Fmt.bytes(20e12); font.weight: Font.DemiBold }
                    }
                }
            }
        }
    }

    Component {
        id: charts
        GridLayout {
            columns: 3
            columnSpacing: 36
            rowSpacing: 26

            Section {
                title: "Disk ring"
                Layout.alignment: Qt.AlignTop
                Ring {
                    size: 170
                    lineWidth: 14
                    segments: [
                        { id: "other", value: 310e9, color: "other" },
                        { id: "swap", value: 8e9, color: "orange", striped: true },
                        { id: "safe", value: 12e9, color: "amber" },
                        { id: "rebuild", value: 22e9, color: "blue" },
                        { id: "yours", value: 31e9, color: "purple" },
                        { id: "free", value: 111e9, color: "green" }
                    ]
                    ColumnLayout {
                        anchors.centerIn: parent
                        spacing: 0
                        UiText { Layout.alignment: Qt.AlignHCenter; text: Fmt.bytes(111e9); font.pixelSize: Metrics.heading; font.weight: Font.Bold }
                        UiText { Layout.alignment: Qt.AlignHCenter; text: "free of " + Fmt.bytes(494e9); color: Palette.text3; font.pixelSize: Metrics.small }
                    }
                }
            }
            Section {
                title: "Rings at their edges"
                Layout.alignment: Qt.AlignTop
                RowLayout {
                    spacing: 14
                    Ring { size: 76; lineWidth: 9; segments: [{ id: "all", value: 1, color: "green" }] }
                    Ring { size: 76; lineWidth: 9; segments: [{ id: "big", value: 20e12, color: "other" }, { id: "tiny", value: 1e6, color: "amber" }] }
                    Ring { size: 76; lineWidth: 9; segments: [] }
                }
            }
            Section {
                title: "Progress"
                Layout.alignment: Qt.AlignTop
                RowLayout {
                    spacing: 16
                    ProgressRing { fraction: 0.35; size: 34; lineWidth: 4 }
                    ProgressRing { fraction: 1; size: 34; lineWidth: 4; color: Palette.green }
                    ProgressRing { size: 34; lineWidth: 4; color: Palette.blue }
                    Spinner { size: 18 }
                    Spinner { size: 24; lineWidth: 2.5; color: Palette.amber }
                }
            }
            Section {
                title: "Stacked bars"
                Layout.columnSpan: 2
                Layout.fillWidth: true
                Layout.alignment: Qt.AlignTop
                StackedBar {
                    Layout.fillWidth: true
                    lineWidth: 12
                    segments: [
                        { id: "other", value: 310e9, color: "other" },
                        { id: "swap", value: 8e9, color: "orange", striped: true },
                        { id: "safe", value: 12e9, color: "amber" },
                        { id: "rebuild", value: 22e9, color: "blue" },
                        { id: "yours", value: 31e9, color: "purple" },
                        { id: "free", value: 111e9, color: "green" }
                    ]
                }
                StackedBar {
                    Layout.fillWidth: true
                    lineWidth: 8
                    segments: [
                        { id: "used", value: 71, color: "memText" },
                        { id: "free", value: 29, color: "dim" }
                    ]
                }
                StackedBar {
                    Layout.fillWidth: true
                    lineWidth: 10
                    segments: [
                        { id: "free", value: 40e9, color: "green" },
                        { id: "gain", value: 12e9, color: "greenText2", hatched: true },
                        { id: "swap", value: 6e9, color: "orange", hatched: true }
                    ]
                    total: 100e9
                }
                StackedBar {
                    Layout.preferredWidth: 160
                    lineWidth: 6
                    segments: [{ id: "big", value: 20e12, color: "other" }, { id: "tiny", value: 1, color: "red" }]
                }
            }
            Section {
                title: "Counting"
                Layout.alignment: Qt.AlignTop
                CountingBytes { value: 4.21e9; prefix: "Freed "; font.pixelSize: Metrics.display; font.weight: Font.Bold }
                CountingBytes { value: 0; color: Palette.text2 }
            }
            Section {
                title: "Tabs"
                Layout.columnSpan: 2
                Layout.alignment: Qt.AlignTop
                SegmentedTabs { items: ["Home", "Storage", "Clean", "Projects", "Speed", "Week"]; selection: 2; dot: 4 }
                RowLayout {
                    spacing: 14
                    MiniTabs { items: ["Processor", "Memory"]; selection: 1 }
                    MiniTabs { items: [{ title: "Day" }, { title: "Week", dot: true }]; selection: 0; widths: [60, 60] }
                }
            }
            Section {
                title: "Not measured yet"
                Layout.alignment: Qt.AlignTop
                Layout.preferredWidth: 260
                Skeleton { Layout.fillWidth: true; implicitHeight: 14 }
                Skeleton { Layout.preferredWidth: 160; implicitHeight: 14 }
                Skeleton { Layout.preferredWidth: 200; implicitHeight: 34; radius: 9 }
            }
            Section {
                title: "Chips that wrap"
                Layout.columnSpan: 3
                Layout.alignment: Qt.AlignTop
                Rectangle {
                    implicitWidth: 430
                    implicitHeight: flow.implicitHeight + 20
                    radius: Metrics.radius
                    color: Palette.panel
                    border.color: Palette.panelStroke
                    FlowLayout {
                        id: flow
                        x: 10; y: 10
                        width: parent.width - 20
                        Repeater {
                            model: ["Claude", "2 Claude", "Dev servers :3000, :5173", "VS Code", "3 weeks old", "Nothing running", "MCP", "Terminal"]
                            delegate: Chip { required property string modelData; required property int index; text: modelData; symbol: index === 0 ? "sparkle" : "" }
                        }
                    }
                }
            }
        }
    }

    Component {
        id: symbols
        ColumnLayout {
            spacing: 18
            Section {
                title: "Symbols"
                Layout.fillWidth: true
                GridLayout {
                    columns: 6
                    columnSpacing: 10
                    rowSpacing: 6
                    Repeater {
                        model: Symbols.names
                        delegate: RowLayout {
                            required property string modelData
                            spacing: 7
                            Layout.preferredWidth: 158
                            Glyph { symbol: modelData; size: 17; color: Palette.textSoft }
                            UiText {
                                Layout.fillWidth: true
                                text: modelData
                                color: Palette.text3
                                font.pixelSize: Metrics.caption
                            }
                        }
                    }
                }
            }
            RowLayout {
                spacing: 30
                Section {
                    title: "Tiles and icons"
                    RowLayout {
                        spacing: 10
                        IconTile { symbol: "custom.broom"; tint: Palette.amber; size: 34 }
                        IconTile { symbol: "hammer"; tint: Palette.blue; size: 34 }
                        IconTile { symbol: "questionmark.circle"; tint: Palette.purple; size: 34 }
                        IconTile { symbol: "custom.ghost"; tint: Palette.amber; size: 34 }
                        IconTile { symbol: "no.such.symbol"; tint: Palette.named("no-such-tint"); size: 34 }
                        ItemIcon { symbol: "app"; tint: Palette.slate; appPath: "/no/such/app.desktop"; size: 34 }
                    }
                }
                Section {
                    title: "Our own shapes"
                    RowLayout {
                        spacing: 12
                        BroomShape { implicitWidth: 40; implicitHeight: 40; color: Palette.amber }
                        GhostShape { implicitWidth: 40; implicitHeight: 40; color: Palette.amber }
                        Glyph { symbol: "custom.broom"; size: 16; color: Palette.textSoft }
                        Glyph { symbol: "custom.ghost"; size: 16; color: Palette.textSoft }
                    }
                }
                Section {
                    title: "Effects at rest"
                    RowLayout {
                        spacing: 14
                        DrawnCheck { size: 26; color: Palette.green }
                        Rectangle {
                            implicitWidth: 120
                            implicitHeight: 34
                            radius: Metrics.radius
                            color: Palette.panel
                            border.color: Palette.panelStroke
                            HoverWash { anchors.fill: parent; radius: parent.radius; hovered: true }
                            UiText { anchors.centerIn: parent; text: "Hovered row"; color: Palette.textSoft }
                        }
                        SparkleBurst { implicitWidth: 30; implicitHeight: 30 }
                        Rectangle {
                            id: entered
                            implicitWidth: 120
                            implicitHeight: 34
                            radius: Metrics.radius
                            color: Palette.panel
                            border.color: Palette.panelStroke
                            transform: [
                                Stagger { target: entered; index: 2 },
                                ScreenEntrance { target: entered },
                                HoverLift { hovered: true },
                                Shake { },
                                FailShake { recId: "restart"; failedRec: "" }
                            ]
                            UiText { anchors.centerIn: parent; text: "Entered row"; color: Palette.textSoft }
                        }
                    }
                }
            }
            Item { Layout.fillHeight: true }
        }
    }
}
