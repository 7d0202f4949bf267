#include "ui/CleanWords.h"

#include "app/ListModel.h"
#include "foundation/Fmt.h"
#include "foundation/PlatformWords.h"
#include "foundation/Tier.h"
#include "ui/Formatter.h"

#include <QDateTime>

#include <algorithm>

namespace {

QString q(std::string_view s) { return QString::fromUtf8(s.data(), qsizetype(s.size())); }
QString bytes(qint64 n) { return QString::fromStdString(Fmt::bytes(std::max<qint64>(0, n))); }
bool present(const QVariant& v) { return v.isValid() && !v.isNull(); }
QString plural(qsizetype n, const char* one, const char* many) {
    return QStringLiteral("%1 %2").arg(n).arg(QLatin1String(n == 1 ? one : many));
}

QString tierTip(Tier t) {
    switch (t) {
    case Tier::safe:
        return QStringLiteral("Caches apps rebuild by themselves. Old ones start ticked: apps you removed or have not used in a "
                              "month, and update leftovers. Caches of apps you use start unticked unless space is low, because "
                              "clearing them makes those apps slower for a while and the space comes back.");
    case Tier::rebuildable:
        return QStringLiteral("Build output and downloaded packages. They come back the next time you install or build.");
    case Tier::yourCall:
        return QStringLiteral("Big things only you can judge. They go to the Trash, so you can still get them back.");
    }
    return {};
}

// "All ticked", "None ticked" or `some` for a set of rows of which `ticked` of `open` unlocked
// ones are ticked.
QString tickWords(int ticked, int open, const QString& some) {
    if (open > 0 && ticked == open) return QStringLiteral("All ticked");
    if (ticked == 0) return QStringLiteral("None ticked");
    return some;
}

} // namespace

CleanWords::CleanWords(QObject* parent) : QObject(parent) {}

QString CleanWords::headline(bool scanned, qint64 cleanable) {
    if (!scanned) return QStringLiteral("Measuring what can go");
    if (cleanable >= 1) return QStringLiteral("Up to %1 can go").arg(bytes(cleanable));
    return QStringLiteral("Nothing left to clean");
}

QVariantList CleanWords::ring(const QVariantMap& disk, qint64 swap, qint64 safe, qint64 rebuild, qint64 yours) {
    const qint64 total = std::max<qint64>(0, disk.value("total").toLongLong());
    const qint64 available = std::clamp<qint64>(disk.value("available").toLongLong(), 0, total);
    qint64 room = total - available;
    // Each part takes what it claims of the used space that is left, in this order.
    auto take = [&room](qint64 want) {
        const qint64 got = std::clamp<qint64>(want, 0, room);
        room -= got;
        return got;
    };
    const qint64 swapPart = take(swap), safePart = take(safe), rebuildPart = take(rebuild), yoursPart = take(yours);
    auto part = [](const char* id, qint64 value, const char* colour, bool striped) {
        return QVariantMap{{"id", QString::fromLatin1(id)}, {"value", double(value)}, {"color", QString::fromLatin1(colour)},
                           {"striped", striped}};
    };
    return {part("other", room, "otherStroke", false),         part("swap", swapPart, "orange", true),
            part("safe", safePart, "amber", false),      part("rebuild", rebuildPart, "blue", false),
            part("yours", yoursPart, "purple", false),   part("free", available, "green", false)};
}

QString CleanWords::tickLine(qint64 ticked, qint64 available) {
    if (ticked <= 0) return QStringLiteral("Tick something to see what you would get back");
    return QStringLiteral("Clearing what is ticked leaves %1 free").arg(bytes(available + ticked));
}

QVariantMap CleanWords::tier(int raw, ListModel* items, bool firstScan) {
    const Tier t = Tiers::fromRaw(raw).value_or(Tier::safe);
    const QString title = q(Tiers::title(t));
    int count = 0, open = 0, tickedCount = 0;
    qint64 total = 0, ticked = 0;
    for (int row = 0; items && row < items->count(); ++row) {
        const QVariantMap i = items->get(row);
        ++count;
        if (i.value("locked").toBool()) continue; // what runs is shown but never offered
        ++open;
        total += i.value("size").toLongLong();
        if (i.value("ticked").toBool()) {
            ++tickedCount;
            ticked += i.value("size").toLongLong();
        }
    }
    const bool all = open > 0 && tickedCount == open;
    QString line;
    if (firstScan) line = QStringLiteral("Measuring…");
    else if (count == 0) line = QStringLiteral("Nothing here");
    else line = tickWords(tickedCount, open, QStringLiteral("%1 ticked").arg(bytes(ticked)));
    return {{"tier", raw},
            {"title", title},
            {"symbol", t == Tier::safe ? QStringLiteral("custom.broom") : q(Tiers::symbol(t))},
            {"colour", q(Tiers::color(t))},
            {"tip", tierTip(t)},
            {"count", count},
            {"open", open},
            {"total", total},
            {"totalText", bytes(total)},
            {"ticked", ticked},
            {"tickedCount", tickedCount},
            {"allTicked", all},
            {"noneTicked", tickedCount == 0},
            {"line", line},
            {"a11y", (all ? QStringLiteral("Untick all ") : QStringLiteral("Tick all ")) + title},
            {"select", all ? QStringLiteral("Deselect all") : QStringLiteral("Select all")},
            {"empty", firstScan ? QStringLiteral("Measuring…") : QStringLiteral("Nothing left to clear here.")}};
}

int CleanWords::shownRows(int count, bool expanded) {
    if (expanded || count < preview + 2) return std::max(0, count);
    return preview;
}

QVariantMap CleanWords::more(ListModel* items, int from) {
    int hidden = 0, open = 0, ticked = 0;
    qint64 size = 0, tickedSize = 0;
    for (int row = std::max(0, from); items && row < items->count(); ++row) {
        const QVariantMap i = items->get(row);
        ++hidden;
        size += i.value("size").toLongLong();
        if (i.value("locked").toBool()) continue;
        ++open;
        if (i.value("ticked").toBool()) {
            ++ticked;
            tickedSize += i.value("size").toLongLong();
        }
    }
    return {{"title", QStringLiteral("%1 more").arg(hidden)},
            {"line", tickWords(ticked, open, QStringLiteral("%1 ticked").arg(ticked))},
            {"size", bytes(size)}};
}

QVariantMap CleanWords::badge(const QVariantMap& row) {
    auto make = [](const QString& text, const char* symbol, const QString& tip, const char* style) {
        return QVariantMap{{"text", text}, {"symbol", QString::fromLatin1(symbol)}, {"tip", tip}, {"style", QString::fromLatin1(style)}};
    };
    const QVariant reason = row.value("lockedReason");
    if (present(reason) && !reason.toString().isEmpty())
        return make(QStringLiteral("In use"), "lock.fill",
                    reason.toString().replace(QStringLiteral(" · "), QStringLiteral(". ")) +
                        QStringLiteral(". Sorrelin never touches a folder something is running in."),
                    "warn");
    const QVariant refill = row.value("refillNote");
    if (present(refill) && !refill.toString().isEmpty())
        return make(QStringLiteral("Refills fast"), "arrow.clockwise",
                    refill.toString() + QStringLiteral(". Clearing it again only buys space for a day or two, and the app is "
                                                       "slower while it rebuilds."),
                    "warn");
    const QString name = row.value("name").toString();
    if (row.value("isOpen").toBool()) {
        QString app = name;
        if (app.endsWith(QLatin1String(" cache"))) app.chop(6);
        return make(QStringLiteral("Open"), "bolt.fill",
                    app + QStringLiteral(" is open, so a little of this refills right away. Quit it first for a full clean."), "plain");
    }
    const QString kind = row.value("cacheKind").toString();
    if (kind == QLatin1String("orphan"))
        return make(QStringLiteral("App removed"), "checkmark",
                    q(PlatformWords::say("The app this belongs to is not on this Mac any more, so nothing refills it.")), "ok");
    if (kind == QLatin1String("leftover"))
        return make(QStringLiteral("Leftovers"), "checkmark", QStringLiteral("Update files, logs or old downloads that nothing reads again."),
                    "ok");
    if (kind == QLatin1String("idle")) {
        const QDateTime used = row.value("lastUsed").toDateTime();
        const QString text = used.isValid()
                                 ? QStringLiteral("Unused since ") + QString::fromStdString(Fmt::dayMonth(Formatter::toTimePoint(used)))
                                 : QStringLiteral("Unused");
        return make(text, "moon.zzz", QStringLiteral("Not used for over a month, so clearing it slows down nothing you use."), "plain");
    }
    if (row.value("removal").toString() == QLatin1String("trash"))
        return make(QStringLiteral("To Trash"), "trash",
                    QStringLiteral("This goes to the Trash instead of being deleted, so you can still get it back."), "plain");
    const QVariant recent = row.value("recentLabel");
    if (present(recent) && !recent.toString().isEmpty()) {
        const QString when = recent.toString().endsWith(QLatin1String("yesterday")) ? QStringLiteral("yesterday") : QStringLiteral("today");
        return make(recent.toString(), "clock",
                    QStringLiteral("You worked on this %1, so it starts unticked. Tick it if you are done with it.").arg(when), "plain");
    }
    return {};
}

QString CleanWords::rowState(const QVariantMap& row) {
    if (row.value("locked").toBool()) return QStringLiteral("Kept while it runs");
    return row.value("ticked").toBool() ? QStringLiteral("ticked") : QStringLiteral("not ticked");
}

QString CleanWords::revealLabel(const QString& name) {
    if (name.isEmpty()) return q(PlatformWords::say("Show in Finder"));
    return QStringLiteral("Show %1 in ").arg(name) + q(PlatformWords::say("Finder"));
}

QVariantMap CleanWords::footer(const QVariantList& selected, bool nudge) {
    int deleted = 0, trashed = 0;
    qint64 size = 0;
    for (const QVariant& v : selected) {
        const QVariantMap i = v.toMap();
        size += std::max<qint64>(0, i.value("size").toLongLong());
        if (i.value("removal").toString() == QLatin1String("trash")) ++trashed;
        else ++deleted;
    }
    if (deleted + trashed == 0)
        return {{"first", QStringLiteral("Nothing ticked")},
                {"second", nudge ? QStringLiteral("Tick something in the list first") : QStringLiteral("Tick what you want gone")}};
    QString second;
    if (trashed == 0) second = plural(deleted, "item", "items") + QStringLiteral(". All of it comes back on its own.");
    else if (deleted == 0) second = trashed == 1 ? QStringLiteral("1 item goes to the Trash.") : QStringLiteral("%1 items go to the Trash.").arg(trashed);
    else second = QStringLiteral("%1 deleted, %2 to the Trash.").arg(deleted).arg(trashed);
    return {{"first", QStringLiteral("%1 ticked").arg(bytes(size))}, {"second", second}};
}

QString CleanWords::updating(const QVariant& scanProgress) {
    const QVariantMap p = scanProgress.toMap();
    if (p.value("stage").toString() == QLatin1String("measuring"))
        return QStringLiteral("Measuring %1 of %2").arg(p.value("done").toInt()).arg(p.value("total").toInt());
    const int checked = p.value("checked").toInt();
    if (checked < 1) return QStringLiteral("Looking for caches");
    return QStringLiteral("Looking through %1 folders").arg(Formatter().grouped(checked));
}

QString CleanWords::scanning(const QVariant& scanProgress) {
    const QVariantMap p = scanProgress.toMap();
    if (p.value("stage").toString() != QLatin1String("measuring")) return {};
    const QString label = p.value("label").toString();
    return label.isEmpty() ? QStringLiteral("Measuring") : QStringLiteral("Measuring ") + label;
}

QVariantMap CleanWords::running(const QVariant& cleanProgress, ListModel* items) {
    const QVariantMap p = cleanProgress.toMap();
    const int done = p.value("done").toInt();
    const int total = std::max(p.value("total").toInt(), 0);
    qint64 size = 0;
    QVariantList rows;
    for (int row = 0; items && row < items->count(); ++row) {
        const QVariantMap i = items->get(row);
        size += std::max<qint64>(0, i.value("size").toLongLong());
        QString state = row < done ? QStringLiteral("done") : row == done ? QStringLiteral("working") : QStringLiteral("waiting");
        if (state == QLatin1String("done") && i.value("removal").toString() == QLatin1String("trash")) state = QStringLiteral("trash");
        rows << QVariantMap{{"name", i.value("name")}, {"size", bytes(i.value("size").toLongLong())}, {"state", state}};
    }
    const QString label = p.value("label").toString();
    return {{"headline", QStringLiteral("Clearing %1").arg(bytes(size))},
            {"line", QStringLiteral("%1 of %2, ").arg(std::min(done, total)).arg(total) +
                         (label.isEmpty() || done >= total ? QStringLiteral("finishing up") : label)},
            {"rows", rows}};
}

QVariantMap CleanWords::done(const QVariant& cleanSummary, ListModel* items, bool emptying) {
    const QVariantMap s = cleanSummary.toMap();
    const QVariantMap r = s.value("report").toMap();
    const qint64 freed = r.value("freed").toLongLong();
    const qint64 trashed = r.value("trashed").toLongLong();
    bool safe = false;
    for (int row = 0; items && row < items->count(); ++row)
        safe = safe || items->get(row).value("tier").toInt() == Tiers::id(Tier::safe);
    // A dry run left the disk as it was: what it would have left is the free space before plus
    // what it pretended to free.
    const qint64 free = s.value("dryRun").toBool() ? s.value("before").toLongLong() + freed : r.value("availableAfter").toLongLong();
    QString subline = QStringLiteral("You have %1 free now.").arg(bytes(free));
    if (trashed > 0) subline += QStringLiteral(" %1 is in the Trash until you empty it.").arg(bytes(trashed));
    else if (safe) subline += QStringLiteral(" Apps refill their caches as you use them.");
    const QStringList failures = r.value("failures").toStringList();
    return {{"headline", QStringLiteral("Freed %1").arg(bytes(freed))},
            {"freed", freed},
            {"subline", subline},
            {"failed", failures.isEmpty() ? QString() : QStringLiteral("%1 not fully cleared").arg(failures.size())},
            {"failures", failures},
            {"trashed", trashed},
            {"emptyLabel", emptying ? QStringLiteral("Emptying the Trash") : QStringLiteral("Empty Trash, %1").arg(bytes(trashed))}};
}

QVariantMap CleanWords::banner(const QVariant& report, bool emptying) {
    const QVariantMap r = report.toMap();
    const qint64 trashed = r.value("trashed").toLongLong();
    const QStringList failures = r.value("failures").toStringList();
    return {{"headline", QStringLiteral("Freed %1").arg(bytes(r.value("freed").toLongLong()))},
            {"line", trashed > 0 ? QStringLiteral("%1 is in the Trash. Empty it to get that space too.").arg(bytes(trashed))
                                 : QStringLiteral("You have %1 free now.").arg(bytes(r.value("availableAfter").toLongLong()))},
            {"failed", failures.isEmpty() ? QString() : QStringLiteral("%1 not fully removed").arg(failures.size())},
            {"failures", failures},
            {"trashed", trashed},
            {"empty", emptying ? QStringLiteral("Emptying") : QStringLiteral("Empty Trash")}};
}
