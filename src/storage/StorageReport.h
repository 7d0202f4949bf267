#pragma once
// Where the space on the disk went: categories with their biggest rows, the biggest single
// files, and every app with what it keeps beside it.
#include "foundation/Time.h"
#include "storage/FileKind.h"
#include "storage/StorageKind.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// One row inside a category. `path` is a real path, or a key that does not start with "/"
// ("asset:{title}", "volume:{role}").
struct StorageItem {
    std::string name;
    std::string path;
    int64_t bytes = 0;
    bool isFolder = false;
    std::optional<std::string> detail; // a second line, such as the folder it sits in
    std::optional<std::string> reveal; // what to show in the file manager when `path` is a key

    [[nodiscard]] const std::string& id() const { return path; }
    // `reveal`, else `path` when it is a real path, else nothing.
    [[nodiscard]] std::optional<std::string> revealPath() const;
    friend bool operator==(const StorageItem&, const StorageItem&) = default;
};

struct StorageCategory {
    StorageKind kind = StorageKind::other;
    int64_t bytes = 0;
    std::vector<StorageItem> items; // biggest first
    int unreadable = 0;             // entries the walk could not read
    // The first of them by path, so the map can name what it could not measure.
    std::vector<std::string> unreadableFolders;

    static constexpr std::size_t namedUnreadable = 12;

    [[nodiscard]] std::string_view id() const { return StorageKinds::raw(kind); }
    friend bool operator==(const StorageCategory&, const StorageCategory&) = default;
};

struct BigFile {
    std::string name;
    std::string path;
    int64_t bytes = 0;
    FileKind kind = FileKind::other;
    StorageKind category = StorageKind::other;
    std::optional<TimePoint> modified;
    std::optional<TimePoint> opened;

    [[nodiscard]] const std::string& id() const { return path; }
    friend bool operator==(const BigFile&, const BigFile&) = default;
};

struct AppSize {
    std::string name;
    std::string path; // the app: its bundle, or on Linux its desktop entry
    std::optional<std::string> bundleID;
    int64_t appBytes = 0;
    int64_t dataBytes = 0; // what it keeps in the app-data folders
    std::optional<TimePoint> lastUsed;

    [[nodiscard]] const std::string& id() const { return path; }
    [[nodiscard]] int64_t total() const { return appBytes + dataBytes; }
    friend bool operator==(const AppSize&, const AppSize&) = default;
};

struct StorageReport {
    TimePoint made{};
    double seconds = 0;
    int64_t diskTotal = 0;
    int64_t diskUsed = 0;     // what files take: the volume's total less free and kept-back space
    int64_t diskReserved = 0; // kept back by the file system for the administrator, neither used nor free
    std::vector<StorageCategory> categories; // biggest first
    std::vector<BigFile> biggest;            // biggest first
    std::vector<AppSize> apps;               // biggest total first
    int files = 0;
    bool complete = false; // false while a walk runs or when it was cancelled
    std::optional<int64_t> vm; // swap on the home volume, when the system accounting measured it

    // The first category of that kind.
    [[nodiscard]] const StorageCategory* category(StorageKind kind) const;
    // The sum of bytes over all categories.
    [[nodiscard]] int64_t measured() const;
    // The report as it stands once `path`, of `bytes`, went to the Trash.
    [[nodiscard]] StorageReport moving(const std::string& path, int64_t bytes) const;
    // What the categories and swap leave unexplained of `used`: never below 0.
    [[nodiscard]] int64_t remainder(int64_t used, int64_t swap) const;

    friend bool operator==(const StorageReport&, const StorageReport&) = default;
};
