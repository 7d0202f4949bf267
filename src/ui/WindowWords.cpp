#include "ui/WindowWords.h"

#include "foundation/Fmt.h"
#include "foundation/PlatformWords.h"
#include "foundation/Time.h"
#include "ui/Formatter.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>

namespace {

QString q(const std::string& s) { return QString::fromStdString(s); }
QString say(const char* s) { return q(PlatformWords::say(s)); }
QString bytes(qint64 n) { return q(Fmt::bytes(n)); }
QString grouped(qint64 n) { return Formatter().grouped(double(n)); }

bool present(const QVariant& v) { return v.isValid() && !v.isNull(); }

} // namespace

WindowWords::WindowWords(QObject* parent) : QObject(parent) {}

QString WindowWords::subtitle(bool cleaning, bool scanning, const QVariant& lastScan) {
    const bool scanned = present(lastScan) && lastScan.toDateTime().isValid();
    if (cleaning) return QStringLiteral("Cleaning now");
    if (scanning) return scanned ? QStringLiteral("Scanning now") : QStringLiteral("First scan");
    if (!scanned) return QStringLiteral("Not scanned yet");
    return QStringLiteral("Scanned ") + q(Fmt::ago(Formatter::toTimePoint(lastScan.toDateTime())));
}

QString WindowWords::rescanLabel(bool scanning) {
    return scanning ? QStringLiteral("Stop scanning") : QStringLiteral("Scan again");
}

QString WindowWords::rescanTip(bool cleaning, bool scanning, int lastScanSeconds) {
    if (cleaning) return QStringLiteral("Scanning is back when the clean finishes.");
    if (scanning) return QStringLiteral("Scanning. Click to stop and keep the last results.");
    if (lastScanSeconds < 1) return QStringLiteral("Scan again.");
    return QStringLiteral("Scan again. The last scan took %1 seconds.").arg(lastScanSeconds);
}

QVariantMap WindowWords::pill(const QVariant& cleanProgress, const QVariant& scanProgress, const QVariant& scanFraction) {
    // A clean is tested first: it wins over a scan progress that is still set.
    if (present(cleanProgress)) {
        const QVariantMap p = cleanProgress.toMap();
        const int n = std::max(p.value("total").toInt(), 1);
        const int k = std::min(n, p.value("done").toInt() + 1);
        return {{"kind", "clean"},
                {"text", QStringLiteral("Cleaning %1 of %2").arg(k).arg(n)},
                {"fraction", double(k) / n},
                {"stop", false},
                {"tip", QString()}};
    }
    if (present(scanProgress)) {
        const QVariantMap p = scanProgress.toMap();
        QString text = QStringLiteral("Scanning");
        QVariant fraction;
        if (present(scanFraction)) {
            const double f = scanFraction.toDouble();
            fraction = f;
            text = QStringLiteral("Scanning · %1%").arg(std::lround(f * 100));
        } else if (p.value("stage").toString() == QLatin1String("measuring")) {
            text = QStringLiteral("Measuring %1 of %2").arg(p.value("done").toInt()).arg(p.value("total").toInt());
        }
        return {{"kind", "scan"}, {"text", text}, {"fraction", fraction}, {"stop", true},
                {"tip", QStringLiteral("Stops the scan and keeps the last results")}};
    }
    return {{"kind", ""}, {"text", QString()}, {"fraction", QVariant()}, {"stop", false}, {"tip", QString()}};
}

QVariantList WindowWords::scanSteps(const QVariant& scanProgress) {
    const QVariantMap p = scanProgress.toMap();
    const bool finding = !present(scanProgress) || p.value("stage").toString() != QLatin1String("measuring");
    const bool measuring = present(scanProgress) && !finding;
    const int checked = p.value("checked").toInt();
    auto row = [](const QString& title, bool done, bool active, const QString& detail) {
        return QVariantMap{{"title", title}, {"state", done ? "done" : active ? "active" : ""}, {"detail", detail}};
    };
    return {
        row(QStringLiteral("Caches and app data"), checked > 0 || !finding, finding && checked == 0, QString()),
        row(QStringLiteral("Projects and build folders"), !finding, finding && checked >= 1,
            checked >= 1 ? grouped(checked) + QStringLiteral(" folders") : QString()),
        row(QStringLiteral("Measuring sizes"), false, measuring,
            measuring ? QStringLiteral("%1 of %2").arg(p.value("done").toInt()).arg(p.value("total").toInt()) : QString()),
    };
}

QVariantMap WindowWords::confirm(const QVariantList& items) {
    struct Group {
        QString title, symbol, colour, detail;
        QList<QVariantMap> rows;
        qint64 bytes = 0;
    };
    Group gone{QStringLiteral("Deleted now"), QStringLiteral("custom.broom"), QStringLiteral("amber"),
               QStringLiteral("comes back on its own"), {}, 0};
    Group trash{QStringLiteral("Moved to the Trash"), QStringLiteral("trash"), QStringLiteral("purple"),
                QStringLiteral("you can still get it back"), {}, 0};
    qint64 total = 0;
    for (const QVariant& v : items) {
        const QVariantMap item = v.toMap();
        const qint64 size = std::max<qint64>(0, item.value("size").toLongLong());
        Group& g = item.value("removal").toString() == QLatin1String("trash") ? trash : gone;
        g.rows.push_back({{"name", item.value("name").toString()}, {"size", size}, {"sizeText", bytes(size)}});
        g.bytes += size;
        total += size;
    }
    QVariantList groups;
    for (Group* g : {&gone, &trash}) {
        if (g->rows.isEmpty()) continue;
        // Larger first; equal sizes keep the model's order.
        std::stable_sort(g->rows.begin(), g->rows.end(), [](const QVariantMap& a, const QVariantMap& b) {
            return a.value("size").toLongLong() > b.value("size").toLongLong();
        });
        QVariantList rows;
        for (const auto& r : g->rows) rows << r;
        const qsizetype n = g->rows.size();
        groups << QVariantMap{{"title", g->title}, {"symbol", g->symbol}, {"colour", g->colour}, {"detail", g->detail},
                              {"head", n == 1 ? QStringLiteral("1 item") : QStringLiteral("%1 items").arg(n)},
                              {"bytes", g->bytes}, {"bytesText", bytes(g->bytes)}, {"items", rows}};
    }
    const QString freed = bytes(total);
    return {{"title", QStringLiteral("Free %1?").arg(freed)},
            {"line", trash.rows.isEmpty() ? QStringLiteral("Everything here comes back on its own when it is needed.")
                                          : QStringLiteral("Caches and build folders are deleted. The rest goes to the Trash.")},
            {"button", QStringLiteral("Free %1").arg(freed)},
            {"bytes", total},
            {"groups", groups}};
}

QVariantMap WindowWords::restart(const QVariantMap& vitals) {
    const QDateTime bootDate = vitals.value("boot").toDateTime();
    const TimePoint now = Clock::now();
    const TimePoint boot = bootDate.isValid() ? Formatter::toTimePoint(bootDate) : now;
    const double up = std::max(0.0, secondsBetween(boot, now));
    const int days = static_cast<int>(up / 86400);
    QString since;
    if (days >= 1) {
        since = QStringLiteral("On since %1, %2 ago.").arg(q(Fmt::dayMonth(boot)), q(Fmt::days(days)));
    } else {
        const int hours = static_cast<int>(up / 3600);
        since = QStringLiteral("On for %1, since %2.")
                    .arg(hours == 1 ? QStringLiteral("1 hour") : QStringLiteral("%1 hours").arg(hours), q(Fmt::clock(boot, now)));
    }
    const qint64 swap = vitals.value("swapUsed").toLongLong();
    return {
        {"title", q(PlatformWords::title("Restart your Mac?"))},
        {"since", since},
        // The system's session asks apps to save; reopening their windows is not promised here.
        {"note", say("macOS asks your apps to save before it restarts.")},
        {"rows", QVariantList{
                     QVariantMap{{"symbol", "internaldrive"}, {"left", QStringLiteral("Swap on your disk now")}, {"right", bytes(swap)}},
                     QVariantMap{{"symbol", "memorychip"},
                                 {"left", QStringLiteral("Memory written to disk since %1").arg(q(Fmt::clock(boot, now)))},
                                 {"right", bytes(vitals.value("swappedOut").toLongLong())}},
                     QVariantMap{{"symbol", "checkmark"}, {"left", QStringLiteral("After the restart swap starts empty")},
                                 {"right", QStringLiteral("Up to %1 back").arg(bytes(swap))}},
                 }},
    };
}

QString WindowWords::toastSymbol(const QString& kind) {
    if (kind == QLatin1String("ok")) return QStringLiteral("checkmark");
    if (kind == QLatin1String("problem")) return QStringLiteral("exclamationmark");
    return QStringLiteral("info");
}
