#include "ui/StorageView.h"

#include "app/AppModel.h"
#include "foundation/FS.h"
#include "foundation/Fmt.h"
#include "storage/FileKind.h"
#include "storage/StorageKind.h"
#include "storage/StorageText.h"
#include "ui/Formatter.h"

#include <algorithm>
#include <numeric>
#include <set>

namespace {

QString q(const std::string& s) { return QString::fromStdString(s); }

std::optional<TimePoint> dateOf(const QVariant& v) {
    if (!v.isValid() || v.isNull()) return std::nullopt;
    const QDateTime d = v.toDateTime();
    if (!d.isValid()) return std::nullopt;
    return Formatter::toTimePoint(d);
}

TimePoint nowOf(AppModel* model) { return model ? model->clock().now() : Clock::now(); }

QVariantMap sliceMap(const StorageView::Slice& s, int64_t diskTotal) {
    return {{"id", q(s.id)},
            {"title", q(s.title)},
            {"legend", q(s.legend)},
            {"value", qint64(s.bytes)},
            {"color", q(s.colour)},
            {"kind", s.kind},
            {"striped", s.striped},
            {"tip", q(StorageView::segmentTip(s, diskTotal))}};
}

} // namespace

StorageView::StorageView(QObject* parent) : QObject(parent) {}

int64_t StorageView::system(const StorageReport& report, const DiskInfo& disk, int64_t swapUsed) {
    return report.remainder(disk.used(), StorageText::swapShown(report, swapUsed)) + disk.reserved;
}

std::vector<StorageView::Slice> StorageView::slices(const StorageReport& report, bool busy, const DiskInfo& disk,
                                                    int64_t swapUsed) {
    std::vector<Slice> out;
    for (const auto& c : report.categories) {
        if (c.bytes <= 0) continue;
        const std::string title(StorageKinds::title(c.kind));
        out.push_back({std::string(StorageKinds::raw(c.kind)), title, title, c.bytes,
                       std::string(StorageKinds::colour(c.kind)), true, false});
    }
    const int64_t swap = StorageText::swapShown(report, swapUsed);
    if (busy) {
        // The kept-back space is known before any walk; only the rest waits for it.
        if (int64_t rest = report.remainder(disk.used(), swap); rest > 0)
            out.push_back({"unmeasured", "Not measured yet", "Not measured yet", rest, "dim", false, true});
        if (disk.reserved > 0)
            out.push_back({"system", "System data", "System data", disk.reserved, "other", false, false});
    } else if (int64_t shared = system(report, disk, swapUsed); shared > 0) {
        out.push_back({"system", "System data", "System data", shared, "other", false, false});
    }
    if (swap > 0) out.push_back({"swap", "Swap and sleep image", "Swap", swap, "orange", false, false});
    out.push_back({"free", "Free", "Free", disk.available, "green", false, false});
    return out;
}

StorageView::Legend StorageView::legend(const std::vector<Slice>& slices, int room) {
    std::vector<std::size_t> order(slices.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return slices[a].bytes > slices[b].bytes; });
    // Folding a single slice saves no room: it keeps its name.
    std::size_t keep = static_cast<std::size_t>(std::max(room, 1));
    if (keep + 1 >= slices.size()) keep = slices.size();
    const std::set<std::size_t> named(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(keep));

    Legend out;
    std::vector<std::string> names;
    int64_t folded = 0;
    for (std::size_t i = 0; i < slices.size(); ++i) {
        if (named.contains(i)) {
            out.named.push_back(slices[i]);
        } else {
            names.push_back(slices[i].legend);
            folded += slices[i].bytes;
        }
    }
    if (!names.empty()) {
        out.rest = "+ ";
        for (const auto& n : names) out.rest += n + ", ";
        out.rest += Fmt::bytes(folded) + " together";
    }
    return out;
}

std::string StorageView::segmentTip(const Slice& slice, int64_t diskTotal) {
    const double share = diskTotal > 0 ? 100.0 * static_cast<double>(slice.bytes) / static_cast<double>(diskTotal) : 0;
    return slice.title + ": " + Fmt::bytes(slice.bytes) + ", " + Fmt::percent(share) + " of the disk";
}

std::string StorageView::when(std::optional<TimePoint> opened, std::optional<TimePoint> modified, TimePoint now) {
    if (opened) return "opened " + Fmt::day(*opened, now);
    if (modified) return "changed " + Fmt::day(*modified, now);
    return {};
}

std::string StorageView::usage(std::optional<TimePoint> lastUsed, TimePoint now) {
    if (!lastUsed) return "Not opened since it was installed";
    if (secondsBetween(*lastUsed, now) > 7'776'000) return "Not opened since " + Fmt::day(*lastUsed, now);
    return "Used " + Fmt::day(*lastUsed, now);
}

std::string StorageView::unreadableNote(int count) {
    if (count <= 1) return "One folder here keeps Sorrelin out with its permissions, so it is not measured:";
    return std::to_string(count) + " folders here keep Sorrelin out with their permissions, so they are not measured:";
}

QVariantList StorageView::slicesOf(AppModel* model) const {
    QVariantList out;
    if (!model) return out;
    const StorageReport* report = model->storageShown();
    if (!report) return out;
    for (const auto& s : slices(*report, model->storageBusy(), model->disk(), model->monitor().vitals.swapUsed))
        out << sliceMap(s, model->disk().total);
    return out;
}

QVariantMap StorageView::legendOf(const QVariantList& list, int room) const {
    std::vector<Slice> parsed;
    for (const QVariant& v : list) {
        const QVariantMap m = v.toMap();
        Slice s;
        s.id = m.value("id").toString().toStdString();
        s.title = m.value("title").toString().toStdString();
        s.legend = m.value("legend").toString().toStdString();
        s.bytes = m.value("value").toLongLong();
        s.colour = m.value("color").toString().toStdString();
        parsed.push_back(std::move(s));
    }
    const Legend l = legend(parsed, room);
    QVariantList named;
    for (const auto& s : l.named) {
        // Hand back the slices as they came, tips included.
        auto it = std::find_if(list.begin(), list.end(), [&](const QVariant& v) { return v.toMap().value("id").toString() == q(s.id); });
        if (it != list.end()) named << *it;
    }
    return {{"named", named}, {"rest", q(l.rest)}};
}

qint64 StorageView::systemOf(AppModel* model) const {
    if (!model || !model->storageShown()) return 0;
    return system(*model->storageShown(), model->disk(), model->monitor().vitals.swapUsed);
}

QString StorageView::whenOf(AppModel* model, const QVariant& opened, const QVariant& modified) const {
    return q(when(dateOf(opened), dateOf(modified), nowOf(model)));
}

QString StorageView::usageOf(AppModel* model, const QVariant& lastUsed) const {
    return q(usage(dateOf(lastUsed), nowOf(model)));
}

QString StorageView::unreadableNoteOf(int count) const { return q(unreadableNote(count)); }

QString StorageView::tilde(AppModel* model, const QString& path) const {
    if (!model) return q(FS::tilde(path.toStdString()));
    return q(FS::tilde(path.toStdString(), model->environment().layout.home));
}

QString StorageView::folderOf(AppModel* model, const QString& kind) const {
    if (!model) return {};
    auto k = StorageKinds::fromRaw(kind.toStdString());
    if (!k) return {};
    auto folder = StorageKinds::folder(*k, model->environment().layout);
    return folder ? q(*folder) : QString();
}

bool StorageView::kindCanTrash(const QString& kind) const {
    auto k = StorageKinds::fromRaw(kind.toStdString());
    return k && StorageKinds::canTrash(*k);
}

QVariantList StorageView::fileKindsOf(AppModel* model) const {
    QVariantList out;
    if (!model || !model->storageShown()) return out;
    std::set<FileKind> present;
    for (const auto& f : model->storageShown()->biggest) present.insert(f.kind);
    for (FileKind k : FileKinds::allCases)
        if (present.contains(k)) out << QVariantMap{{"id", q(std::string(FileKinds::raw(k)))}, {"title", q(std::string(FileKinds::title(k)))}};
    return out;
}
