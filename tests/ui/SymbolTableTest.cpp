#include "advice/Rec.h"
#include "foundation/CleanItem.h"
#include "foundation/Tier.h"
#include "ui/Fonts.h"
#include "ui/SymbolTable.h"
#include "ui/Symbols.h"

#include <QRawFont>
#include <QStandardPaths>

#include <set>

#include <gtest/gtest.h>

namespace {

QRawFont symbolFont() {
    const QString file = QStandardPaths::locate(
        QStandardPaths::GenericDataLocation, "fonts/truetype/material-design-icons-iconfont/MaterialIcons-Regular.ttf");
    return file.isEmpty() ? QRawFont() : QRawFont(file, 24);
}

CleanItem item(std::string id, std::string name = "Something", std::string note = "") {
    CleanItem i;
    i.id = std::move(id);
    i.name = std::move(name);
    i.note = std::move(note);
    return i;
}

} // namespace

TEST(SymbolTable, EveryGlyphIsInTheInstalledFont) {
    QRawFont font = symbolFont();
    if (!font.isValid()) GTEST_SKIP() << "the Material icon font (fonts-material-design-icons-iconfont) is not installed";
    EXPECT_FALSE(Fonts::symbolFamily().isEmpty());
    int glyphs = 0;
    for (const auto& s : SymbolTable::all()) {
        if (s.glyph == 0) continue;
        ++glyphs;
        EXPECT_TRUE(font.supportsCharacter(QChar(s.glyph))) << s.name;
    }
    EXPECT_TRUE(font.supportsCharacter(QChar(SymbolTable::fallback().glyph)));
    EXPECT_GT(glyphs, 50);
}

TEST(SymbolTable, NamesAreUniqueAndEachDrawsSomething) {
    std::set<std::string_view> seen;
    for (const auto& s : SymbolTable::all()) {
        EXPECT_TRUE(seen.insert(s.name).second) << "twice: " << s.name;
        EXPECT_TRUE(s.glyph != 0 || !s.shape.empty()) << s.name;
    }
    EXPECT_EQ(SymbolTable::find("custom.broom").shape, "broom");
    EXPECT_EQ(SymbolTable::find("custom.ghost").shape, "ghost");
}

TEST(SymbolTable, AnUnknownNameGetsTheNeutralMarkNeverNothing) {
    for (const char* name : {"", "no.such.symbol", "custom.unknown", "checkmark "}) {
        EXPECT_FALSE(SymbolTable::known(name)) << name;
        EXPECT_EQ(SymbolTable::find(name).glyph, SymbolTable::fallback().glyph) << name;
    }
    Symbols qml;
    EXPECT_EQ(qml.glyph("nonsense"), QString(QChar(SymbolTable::fallback().glyph)));
    EXPECT_EQ(qml.shape("custom.broom"), "broom");
    EXPECT_TRUE(qml.glyph("custom.broom").isEmpty());
}

// Symbols named by the screens' own words, and every symbol the core hands to a view.
TEST(SymbolTable, KnowsEverySymbolTheScreensAndTheCoreName) {
    for (const char* name :
         {"checkmark", "internaldrive", "memorychip", "trash", "power", "sparkle", "chart.pie", "calendar", "hourglass",
          "info", "exclamationmark", "exclamationmark.triangle.fill", "arrow.counterclockwise", "macwindow", "lock.fill",
          "lock.shield", "arrow.clockwise", "bolt.fill", "moon.zzz", "clock", "chevron.down", "gauge.with.needle",
          "thermometer.medium", "checkmark.shield", "checkmark.circle", "apple.logo", "app", "terminal",
          "square.grid.2x2", "custom.ghost", "custom.broom", "slider.horizontal.3", "line.3.horizontal", "powerplug",
          "shippingbox", "chevron.left.forwardslash.chevron.right", "globe", "doc.text", "film", "arrow.down.to.line",
          "hammer", "folder", "square.stack.3d.up", "wrench.and.screwdriver", "doc", "magnifyingglass"})
        EXPECT_TRUE(SymbolTable::known(name)) << name;
    for (Tier t : {Tier::safe, Tier::rebuildable, Tier::yourCall}) EXPECT_TRUE(SymbolTable::known(Tiers::symbol(t)));
    for (RecReason r : RecReasons::allCases) EXPECT_TRUE(SymbolTable::known(RecReasons::symbol(r)));
    const std::vector<CleanItem> items{
        item("project:app"), item("download:a", "a.iso", "Installer"), item("download:b", "b.mkv", "Video"),
        item("download:c", "c.zip", "Archive"), item("download:d", "d", "App"), item("download:e", "e", "Folder"),
        item("download:f", "f.pdf", "Document"), item("claude-vm"), item("chrome-model"), item("node:20"),
        item("models:x"), item("pnpm-store"), item("docker"), item("ios-backups"), item("xcode-derived"),
        item("simulators"), item("logs"), item("brew"), item("x", "App update files"), item("y", "Chrome cache"),
        item("z", "Slack cache"), item("w", "Claude cache"), item("v", "Code cache"), item("u", "npm cache"),
        item("t", "node-gyp"), item("s", "Spotify cache"), item("r", "Anything else")};
    for (const CleanItem& i : items) EXPECT_TRUE(SymbolTable::known(i.symbol())) << i.id << " " << i.symbol();
}
