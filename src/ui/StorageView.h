#pragma once
// The Storage tab's decisions, as the QML singleton `StorageView`: which slices the disk bar
// has and what they are called, which legend entries fold together, and the words of a row's
// date, an app's last use and a category's unreadable folders. The tab only lays them out.
#include "foundation/DiskInfo.h"
#include "foundation/Time.h"
#include "storage/StorageReport.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class AppModel;

class StorageView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    struct Slice {
        std::string id;
        std::string title;
        std::string legend; // the shorter name in the legend
        int64_t bytes = 0;
        std::string colour; // a palette name or "#RRGGBB"
        bool kind = false;  // a category: a click opens it in the list
        bool striped = false;
        friend bool operator==(const Slice&, const Slice&) = default;
    };
    struct Legend {
        std::vector<Slice> named; // in bar order
        std::string rest;         // "+ a, b, 3 GB together", or empty
    };

    explicit StorageView(QObject* parent = nullptr);

    // The bar, in its order: the categories, then what is not measured yet while the walk
    // runs or else the system's share (what the categories and swap leave of the used space,
    // with the space the file system keeps back), then swap, then free. The slices add up to
    // the disk's total once the walk is complete.
    [[nodiscard]] static std::vector<Slice> slices(const StorageReport& report, bool busy, const DiskInfo& disk,
                                                   int64_t swapUsed);
    // The system's share of a complete report: the unexplained rest and the kept-back space.
    [[nodiscard]] static int64_t system(const StorageReport& report, const DiskInfo& disk, int64_t swapUsed);
    // The `room` biggest slices by name, in bar order; the others folded into one line.
    [[nodiscard]] static Legend legend(const std::vector<Slice>& slices, int room);
    // "{title}: {bytes}, {percent} of the disk".
    [[nodiscard]] static std::string segmentTip(const Slice& slice, int64_t diskTotal);
    // "opened {day}" when the file was opened, else "changed {day}", else nothing.
    [[nodiscard]] static std::string when(std::optional<TimePoint> opened, std::optional<TimePoint> modified,
                                          TimePoint now);
    // An app's last use: never, long ago, or the day.
    [[nodiscard]] static std::string usage(std::optional<TimePoint> lastUsed, TimePoint now);
    // The sentence over a category's folders that keep Sorrelin out.
    [[nodiscard]] static std::string unreadableNote(int count);

    // ---- QML ----
    // The bar's slices of the model's shown report, as {id,title,legend,value,color,kind,
    // striped,tip}; empty without a report.
    Q_INVOKABLE [[nodiscard]] QVariantList slicesOf(AppModel* model) const;
    // {named: [slices], rest: text}.
    Q_INVOKABLE [[nodiscard]] QVariantMap legendOf(const QVariantList& slices, int room) const;
    Q_INVOKABLE [[nodiscard]] qint64 systemOf(AppModel* model) const;
    Q_INVOKABLE [[nodiscard]] QString whenOf(AppModel* model, const QVariant& opened, const QVariant& modified) const;
    Q_INVOKABLE [[nodiscard]] QString usageOf(AppModel* model, const QVariant& lastUsed) const;
    Q_INVOKABLE [[nodiscard]] QString unreadableNoteOf(int count) const;
    // A path as the user knows it, "~/..." below the model's home.
    Q_INVOKABLE [[nodiscard]] QString tilde(AppModel* model, const QString& path) const;
    // The folder a category opens in the file manager; empty when it has none.
    Q_INVOKABLE [[nodiscard]] QString folderOf(AppModel* model, const QString& kind) const;
    // Whether rows of a category of this kind may go to the Trash from the map.
    Q_INVOKABLE [[nodiscard]] bool kindCanTrash(const QString& kind) const;
    // The kinds present among the biggest files, in their declared order, as {id, title}.
    Q_INVOKABLE [[nodiscard]] QVariantList fileKindsOf(AppModel* model) const;
};
