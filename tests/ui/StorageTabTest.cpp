// The Storage tab over a model that starts from a stored walk of a generated home: what a
// person clicks reaches the model and the disk, and what the tab shows follows.
#include "ScreenHarness.h"

#include "foundation/FS.h"

#include <QQmlProperty>
#include <QTest>

#include <gtest/gtest.h>

namespace {

StorageItem row(const TempTree& home, const std::string& name, const std::string& relative, int64_t bytes, bool folder) {
    return StorageItem{name, home.path(relative), bytes, folder, std::nullopt, std::nullopt};
}

BigFile big(const TempTree& home, const std::string& relative, int64_t bytes, FileKind kind, StorageKind category) {
    return BigFile{FS::lastComponent(home.path(relative)), home.path(relative), bytes, kind, category,
                   fromSeconds(1'700'000'000), std::nullopt};
}

// A walk of the generated home as the model would have stored it: files that exist, sizes
// that stand for big ones, two folders that kept the walk out, and a music folder that could
// not be read at all.
StorageReport walked(const TempTree& home) {
    home.file("Downloads/ubuntu.iso", 4096);
    home.file("Downloads/old/setup.bin", 4096);
    home.file("Pictures/Photos Library.photoslibrary/db", 4096);
    StorageReport r;
    r.made = fromSeconds(1'700'000'000);
    r.seconds = 30;
    r.diskTotal = 500 * GB;
    r.diskUsed = 355 * GB;
    r.diskReserved = 25 * GB;
    r.files = 123456;
    r.complete = true;
    r.categories = {
        StorageCategory{StorageKind::downloads, 9 * GB,
                        {row(home, "ubuntu.iso", "Downloads/ubuntu.iso", 6 * GB, false),
                         row(home, "old", "Downloads/old", 3 * GB, true)}, 0, {}},
        StorageCategory{StorageKind::documents, 5 * GB, {row(home, "thesis", "Documents/thesis", 5 * GB, true)}, 2,
                        {home.path("Documents/locked"), home.path("Documents/private")}},
        StorageCategory{StorageKind::apps, 2 * GB, {}, 0, {}},
        StorageCategory{StorageKind::music, 0, {}, 2, {home.path("Music/a"), home.path("Music/b")}},
    };
    r.biggest.push_back(big(home, "Downloads/ubuntu.iso", 6 * GB, FileKind::diskImage, StorageKind::downloads));
    r.biggest.push_back(big(home, "Pictures/Photos Library.photoslibrary", 4 * GB, FileKind::image, StorageKind::pictures));
    for (int i = 0; i < 8; ++i)
        r.biggest.push_back(big(home, "Documents/thesis/clip" + std::to_string(i) + ".mp4", (900 - i) * MB, FileKind::video,
                                StorageKind::documents));
    r.apps = {AppSize{"Editor", home.path(".local/share/applications/editor.desktop"), "editor", 400 * MB, 2 * GB,
                      fromSeconds(1'600'000'000)}};
    return r;
}

QString text(QQuickItem* item) { return item ? QQmlProperty::read(item, "text").toString() : QString(); }

// The rows of a category, as the model lists them.
QStringList rowPaths(AppModel& model, const QString& kind) {
    QStringList out;
    const int at = model.storageCategoriesModel()->indexOf(kind);
    if (at < 0) return out;
    for (const QVariant& v : model.storageCategoriesModel()->get(at).value("items").toList())
        out << v.toMap().value("path").toString();
    return out;
}

qint64 categoryBytes(AppModel& model, const QString& kind) {
    const int at = model.storageCategoriesModel()->indexOf(kind);
    return at < 0 ? 0 : model.storageCategoriesModel()->get(at).value("bytes").toLongLong();
}

} // namespace

// Two clicks on a row's Trash button move the file into the freedesktop Trash; the row leaves
// the list and the Trash grows by its size. The toast's Undo puts the file and the row back.
TEST(StorageTab, TrashFromARowReachesTheTrashAndUndoBringsTheRowBack) {
    ScreenHarness screen;
    screen.storeReport(walked(screen.home));
    AppModel& model = screen.model();
    ASSERT_TRUE(model.storageShown());
    QQuickItem* tab = screen.show("storage/StorageTab.qml", QSize(1180, 1400));
    ASSERT_TRUE(tab);

    QQuickItem* downloads = screen.find("category-downloads");
    ASSERT_TRUE(downloads);
    ASSERT_TRUE(screen.click(screen.find("head", downloads)));
    const std::string iso = screen.home.path("Downloads/ubuntu.iso");
    QQuickItem* isoRow = nullptr;
    ASSERT_TRUE(ScreenHarness::waitUntil([&] {
        auto rows = screen.visible("item-ubuntu.iso", downloads);
        isoRow = rows.empty() ? nullptr : rows.front();
        return isoRow != nullptr;
    })) << "opening the category lists its rows";
    QQuickItem* trash = screen.find("trash", isoRow);
    ASSERT_TRUE(trash);

    ASSERT_TRUE(screen.click(trash));
    EXPECT_EQ(model.armedValue().toStdString(), "trash:" + iso);
    EXPECT_EQ(text(trash), "Move to Trash?");
    EXPECT_TRUE(FS::exists(iso)) << "the first click only arms";

    ASSERT_TRUE(screen.click(trash));
    const std::string trashed = screen.home.path(".local/share/Trash/files/ubuntu.iso");
    ASSERT_TRUE(ScreenHarness::waitUntil([&] { return !FS::exists(iso) && FS::exists(trashed) && model.trashing().empty(); }));
    EXPECT_TRUE(FS::exists(screen.home.path(".local/share/Trash/info/ubuntu.iso.trashinfo")));
    ASSERT_TRUE(ScreenHarness::waitUntil([&] { return !rowPaths(model, "downloads").contains(QString::fromStdString(iso)); }));
    EXPECT_EQ(categoryBytes(model, "downloads"), 3 * GB);
    EXPECT_EQ(categoryBytes(model, "trash"), 6 * GB);
    EXPECT_EQ(model.storageBiggestModel()->indexOf(QString::fromStdString(iso)), -1);
    ASSERT_TRUE(model.toast());
    EXPECT_EQ(model.toast()->action, std::optional<std::string>("Undo"));

    model.runToastAction();
    ASSERT_TRUE(ScreenHarness::waitUntil([&] { return FS::exists(iso) && !FS::exists(trashed); }));
    ASSERT_TRUE(ScreenHarness::waitUntil([&] { return rowPaths(model, "downloads").contains(QString::fromStdString(iso)); }));
    EXPECT_EQ(categoryBytes(model, "downloads"), 9 * GB);
    EXPECT_EQ(categoryBytes(model, "trash"), 0);
    EXPECT_GE(model.storageBiggestModel()->indexOf(QString::fromStdString(iso)), 0);
}

// A category that could not be read at all keeps its row, marked; an open one names the
// folders that kept Sorrelin out. Libraries and apps offer no Trash.
TEST(StorageTab, LockedFoldersAreNamedAndLibrariesAndAppsCannotBeTrashed) {
    ScreenHarness screen;
    screen.storeReport(walked(screen.home));
    ASSERT_TRUE(screen.show("storage/StorageTab.qml", QSize(1180, 1600)));

    QQuickItem* music = screen.find("category-music");
    ASSERT_TRUE(music) << "0 bytes and 2 unreadable folders still make a row";
    EXPECT_TRUE(screen.find("partly", music)->isVisible());
    EXPECT_FALSE(screen.find("partly", screen.find("category-downloads"))->isVisible());

    QQuickItem* documents = screen.find("category-documents");
    ASSERT_TRUE(screen.click(screen.find("head", documents)));
    QQuickItem* note = screen.find("unreadableNote", documents);
    ASSERT_TRUE(note);
    ASSERT_TRUE(ScreenHarness::waitUntil([&] { return note->isVisible(); }));
    EXPECT_EQ(text(screen.find("sentence", note)),
              "2 folders here keep Sorrelin out with their permissions, so they are not measured:");
    QStringList named;
    for (QQuickItem* t : screen.visible("folder", note)) named << text(t);
    EXPECT_EQ(named, (QStringList{"~/Documents/locked", "~/Documents/private"}));

    QQuickItem* library = screen.find("file-Photos Library.photoslibrary");
    ASSERT_TRUE(library);
    EXPECT_FALSE(screen.find("trash", library)->isVisible()) << "a photo library never goes to the Trash from here";
    QQuickItem* iso = screen.find("file-ubuntu.iso");
    ASSERT_TRUE(iso);
    EXPECT_TRUE(screen.find("trash", iso)->isVisible());
    EXPECT_FALSE(screen.find("trash", screen.find("apps"))) << "apps have no Trash button";

    // The system's share stands under the categories with its size in their column.
    QQuickItem* system = screen.find("systemRow");
    ASSERT_TRUE(system && system->isVisible());
    auto rightEdge = [](QQuickItem* t) { return t->mapToScene(QPointF(t->width(), 0)).x(); };
    EXPECT_NEAR(rightEdge(screen.find("size", system)), rightEdge(screen.find("size", music)), 1.0);
    screen.picture("storage-generated.png");
}

// Kind chips keep one kind; eight rows stand at first and the link opens the rest.
TEST(StorageTab, BigFilesFilterByKindAndOpenUpToTheirLimit) {
    ScreenHarness screen;
    screen.storeReport(walked(screen.home));
    ASSERT_TRUE(screen.show("storage/StorageTab.qml", QSize(1180, 1800)));
    QQuickItem* panel = screen.find("bigFiles");
    ASSERT_TRUE(panel);
    auto shownFiles = [&] { return static_cast<int>(screen.visible("file-", panel).size()); };
    QQuickItem* more = screen.find("showMore", panel);
    EXPECT_EQ(shownFiles(), 8);
    EXPECT_EQ(text(more), "Show 2 more");
    ASSERT_TRUE(screen.click(more));
    ASSERT_TRUE(ScreenHarness::waitUntil([&] { return shownFiles() == 10; }));
    EXPECT_EQ(text(more), "Show fewer");

    ASSERT_TRUE(screen.click(screen.find("chip-diskImage", panel)));
    ASSERT_TRUE(ScreenHarness::waitUntil([&] { return shownFiles() == 1; }));
    EXPECT_TRUE(screen.find("file-ubuntu.iso", panel)->isVisible());
    EXPECT_FALSE(more->isVisible());
    ASSERT_TRUE(screen.click(screen.find("chip-all", panel)));
    ASSERT_TRUE(ScreenHarness::waitUntil([&] { return shownFiles() == 8; })) << "a new filter starts folded again";
}

// A report with tens of thousands of big-file candidates (a stored walk of a huge disk, or a
// hand-edited file) still builds only the rows a person can see: eight, then forty, whatever
// the list holds; a kind chip counts its own files; and trashing one of them drops one row.
TEST(StorageTab, TensOfThousandsOfBigFilesStillShowEightThenForty) {
    ScreenHarness screen;
    StorageReport report = walked(screen.home);
    const int extra = 30'000;
    for (int i = 0; i < extra; ++i)
        report.biggest.push_back(big(screen.home, "Documents/archive/part" + std::to_string(i) + (i % 3 ? ".zip" : ".mov"),
                                     500 * MB - i, i % 3 ? FileKind::archive : FileKind::video, StorageKind::documents));
    const std::size_t all = report.biggest.size();
    screen.storeReport(report);
    AppModel& model = screen.model();
    ASSERT_EQ(model.storageBiggestModel()->rowCount(), static_cast<int>(all));
    ASSERT_TRUE(screen.show("storage/StorageTab.qml", QSize(1180, 1800)));
    QQuickItem* panel = screen.find("bigFiles");
    ASSERT_TRUE(panel);
    // Rows made at all, visible or not: a Repeater makes one per row of its model.
    auto made = [&] {
        int n = 0;
        std::function<void(QQuickItem*)> walk = [&](QQuickItem* item) {
            if (item->objectName().startsWith("file-")) ++n;
            for (QQuickItem* child : item->childItems()) walk(child);
        };
        walk(panel);
        return n;
    };
    EXPECT_EQ(made(), 8);
    QQuickItem* more = screen.find("showMore", panel);
    EXPECT_EQ(text(more), "Show 32 more") << "up to forty, never the whole list";
    ASSERT_TRUE(screen.click(more));
    ASSERT_TRUE(ScreenHarness::waitUntil([&] { return made() == 40; }));

    ASSERT_TRUE(screen.click(screen.find("chip-video", panel)));
    ASSERT_TRUE(ScreenHarness::waitUntil([&] { return made() == 8; })) << "a new filter starts folded";
    EXPECT_EQ(text(screen.find("showMore", panel)), "Show 32 more");
    for (QQuickItem* row : screen.visible("file-", panel))
        EXPECT_TRUE(row->objectName().endsWith(".mov") || row->objectName().endsWith(".mp4")) << row->objectName().toStdString();

    // One of the thirty thousand leaves the list when it goes to the Trash.
    ASSERT_TRUE(screen.click(screen.find("chip-all", panel)));
    ASSERT_TRUE(ScreenHarness::waitUntil([&] { return made() == 8; }));
    const std::string iso = screen.home.path("Downloads/ubuntu.iso");
    QQuickItem* isoRow = screen.find("file-ubuntu.iso", panel);
    ASSERT_TRUE(isoRow);
    QQuickItem* trash = screen.find("trash", isoRow);
    ASSERT_TRUE(screen.click(trash));
    ASSERT_TRUE(screen.click(trash));
    ASSERT_TRUE(ScreenHarness::waitUntil([&] { return model.storageBiggestModel()->rowCount() == static_cast<int>(all) - 1; }));
    EXPECT_EQ(model.storageBiggestModel()->indexOf(QString::fromStdString(iso)), -1);
    EXPECT_EQ(made(), 8) << "the next file moves up into the eight";
}
