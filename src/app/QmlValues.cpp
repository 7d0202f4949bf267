#include "app/QmlValues.h"

#include <algorithm>
#include <chrono>

namespace QmlValues {

QString text(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size())); }

QVariant optionalText(const std::optional<std::string>& s) { return s ? QVariant(text(*s)) : QVariant(); }

QStringList texts(const std::vector<std::string>& list) {
    QStringList out;
    out.reserve(static_cast<qsizetype>(list.size()));
    for (const auto& s : list) out << text(s);
    return out;
}

QDateTime date(TimePoint t) {
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(t.time_since_epoch()).count();
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(ms));
}

QVariant date(const std::optional<TimePoint>& t) { return t ? QVariant(date(*t)) : QVariant(); }

QVariantList ints(const std::vector<int32_t>& list) {
    QVariantList out;
    for (int32_t v : list) out << v;
    return out;
}

QString recState(RecState s) {
    switch (s) {
    case RecState::queued: return QStringLiteral("queued");
    case RecState::busy: return QStringLiteral("busy");
    case RecState::done: return QStringLiteral("done");
    }
    return {};
}

QVariantMap disk(const DiskInfo& d) {
    return {{"name", text(d.name)}, {"total", qint64(d.total)}, {"available", qint64(d.available)},
            {"reserved", qint64(d.reserved)}, {"used", qint64(d.used())}};
}

QVariantMap scanProgress(const ScanProgress& p) {
    return {{"stage", p.stage == ScanProgress::Stage::finding ? QStringLiteral("finding") : QStringLiteral("measuring")},
            {"checked", p.checked},
            {"done", p.done},
            {"total", p.total},
            {"label", text(p.label)},
            {"found", qint64(p.found)}};
}

QVariantMap cleanProgress(const CleanProgress& p) {
    return {{"done", p.done}, {"total", p.total}, {"label", text(p.label)}, {"source", text(p.source)}, {"showsSheet", p.showsSheet()}};
}

QVariantMap cleanReport(const CleanReport& r) {
    return {{"freed", qint64(r.freed)},
            {"removedCount", r.removedCount},
            {"trashed", qint64(r.trashed)},
            {"failures", texts(r.failures)},
            {"availableAfter", qint64(r.availableAfter)},
            {"date", date(r.date)},
            {"source", text(r.source)}};
}

QVariantMap cleanSummary(const CleanSummary& s) {
    return {{"report", cleanReport(s.report)}, {"before", qint64(s.before)}};
}

QVariantMap toast(const Toast& t) {
    return {{"text", text(t.text)},
            {"kind", text(Toast::kindName(t.kind))},
            {"action", optionalText(t.action)},
            {"seconds", t.seconds},
            {"id", QVariant::fromValue(static_cast<qulonglong>(t.id))}};
}

QVariantMap pace(const Pace& p) {
    return {{"bytesPerDay", p.bytesPerDay}, {"days", p.days}, {"since", date(p.since)}, {"filling", p.filling()}};
}

QVariantMap vitals(const Vitals& v, TimePoint now) {
    const double up = std::max(0.0, secondsBetween(v.boot, now));
    return {{"cpu", v.cpu ? QVariant(*v.cpu) : QVariant()},
            {"pressure", v.pressure},
            {"freePercent", v.freePercent},
            {"compressed", qint64(v.compressed)},
            {"swapUsed", qint64(v.swapUsed)},
            {"swapTotal", qint64(v.swapTotal)},
            {"swappedOut", qint64(v.swappedOut)},
            {"boot", date(v.boot)},
            {"thermal", v.thermal},
            {"uptimeDays", static_cast<int>(up / 86400)}};
}

QVariantMap sharedPackages(const SharedPackages& s) {
    return {{"group", text(s.group)}, {"apps", s.apps}, {"packages", s.packages}, {"today", qint64(s.today)}, {"shared", qint64(s.shared)}};
}

QVariantMap growth(const GrowthReport& g) { return {{"made", date(g.made)}, {"total", qint64(g.total())}}; }

QVariantMap growthPlace(const GrowthPlace& p) {
    return {{"name", text(p.name)}, {"location", text(p.location)}, {"bytes", qint64(p.bytes)}, {"bucket", GrowthBuckets::raw(p.bucket)}};
}

QVariantMap storage(const StorageReport& r) {
    return {{"made", date(r.made)},
            {"seconds", r.seconds},
            {"diskTotal", qint64(r.diskTotal)},
            {"diskUsed", qint64(r.diskUsed)},
            {"diskReserved", qint64(r.diskReserved)},
            {"files", r.files},
            {"complete", r.complete},
            {"vm", r.vm ? QVariant(qint64(*r.vm)) : QVariant()},
            {"measured", qint64(r.measured())}};
}

QVariantMap storageItem(const StorageItem& i) {
    return {{"name", text(i.name)},
            {"path", text(i.path)},
            {"bytes", qint64(i.bytes)},
            {"isFolder", i.isFolder},
            {"detail", optionalText(i.detail)},
            {"reveal", optionalText(i.revealPath())}};
}

QVariantMap leftover(const Leftover& l) {
    return {{"id", l.id},
            {"pids", ints(l.pids)},
            {"label", text(l.label)},
            {"cwd", text(l.cwd)},
            {"project", text(l.project)},
            {"started", date(l.started)},
            {"memory", qint64(l.memory)}};
}

QVariantMap projectApp(const ProjectApp& a) {
    return {{"id", text(a.id)}, {"name", text(a.name)}, {"build", qint64(a.build)}, {"running", a.running}, {"itemID", optionalText(a.itemID)}};
}

} // namespace QmlValues
