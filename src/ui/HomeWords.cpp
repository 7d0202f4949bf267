#include "ui/HomeWords.h"

#include "app/AppModel.h"
#include "app/ListModel.h"
#include "foundation/Fmt.h"
#include "foundation/PlatformWords.h"
#include "foundation/Time.h"
#include "ui/Formatter.h"

#include <algorithm>
#include <cmath>

namespace {

QString q(const std::string& s) { return QString::fromStdString(s); }
QString say(const char* s) { return q(PlatformWords::say(s)); }
QString bytes(qint64 n) { return q(Fmt::bytes(std::max<qint64>(0, n))); }
bool present(const QVariant& v) { return v.isValid() && !v.isNull(); }
QVariantMap segment(const QString& id, double value, const QString& colour) {
    return {{"id", id}, {"value", std::max(0.0, value)}, {"color", colour}};
}
QVariantMap tile(const QString& status, const char* tone, const QString& value, const QString& unit, const QString& sub) {
    return {{"status", status}, {"tone", QString::fromLatin1(tone)}, {"value", value}, {"unit", unit}, {"sub", sub}};
}

} // namespace

HomeWords::HomeWords(QObject* parent) : QObject(parent) {}

QString HomeWords::heading(const QStringList& slow, const QVariantMap& hero) {
    if (!slow.isEmpty()) return say("Your Mac is slow right now");
    if (hero.isEmpty()) return QStringLiteral("Nothing urgent right now");
    const QString reason = hero.value("reason").toString();
    if (reason == QLatin1String("memory")) return QStringLiteral("Memory is tight");
    if (reason == QLatin1String("disk")) return QStringLiteral("Free space is running low");
    return QStringLiteral("A few things would help");
}

QString HomeWords::sentence(const QStringList& slow, const QVariantMap& hero, const QVariantMap& disk) {
    if (slow.size() == 2) return QStringLiteral("%1 and %2 are keeping the processor busy in the background.").arg(slow[0], slow[1]);
    if (slow.size() == 1) return QStringLiteral("%1 is keeping the processor busy in the background.").arg(slow[0]);
    if (slow.size() > 2)
        return QStringLiteral("%1 apps you are not using are keeping the processor busy in the background.").arg(slow.size());
    if (hero.isEmpty()) return say("Sorrelin keeps watching and tells you when something starts to slow your Mac or fill your disk.");
    const QString reason = hero.value("reason").toString();
    if (reason == QLatin1String("disk")) {
        const QString name = disk.value("name").toString();
        return QStringLiteral("Only %1 is free on %2.")
            .arg(bytes(disk.value("available").toLongLong()), name.isEmpty() ? QStringLiteral("your disk") : name);
    }
    if (reason == QLatin1String("memory")) return say("Your Mac is moving memory onto the disk, which makes switching apps slow.");
    return hero.value("why").toString();
}

QString HomeWords::freedChip(qint64 freedToday) {
    if (freedToday < 100 * MB) return {};
    return QStringLiteral("You freed %1 today").arg(bytes(freedToday));
}

QVariantMap HomeWords::speed(const QVariantMap& vitals, int slowCount) {
    const QVariant cpu = vitals.value("cpu");
    const bool known = present(cpu);
    const bool busy = known && cpu.toDouble() >= 80 && slowCount == 0;
    const QString value = known ? QStringLiteral("%1%").arg(std::lround(cpu.toDouble())) : QStringLiteral("…");
    if (slowCount > 0)
        return tile(QStringLiteral("Slow"), "orange", value, QStringLiteral("of the processor busy"),
                    QStringLiteral("%1 %2 busy in the background").arg(slowCount).arg(slowCount == 1 ? "app" : "apps"));
    if (busy) return tile(QStringLiteral("Busy"), "amber", value, QStringLiteral("of the processor busy"), QStringLiteral("Busy with apps you are using"));
    return tile(QStringLiteral("Fine"), "green", value, QStringLiteral("of the processor busy"), QStringLiteral("Nothing busy in the background"));
}

QVariantMap HomeWords::memory(const QVariantMap& vitals) {
    const int pressure = vitals.value("pressure").toInt();
    const qint64 swap = vitals.value("swapUsed").toLongLong();
    const QString sub = swap < GB ? QStringLiteral("%1 squeezed to fit").arg(bytes(vitals.value("compressed").toLongLong()))
                                  : QStringLiteral("%1 swapped to your disk").arg(bytes(swap));
    const QString value = QStringLiteral("%1%").arg(std::lround(std::clamp(vitals.value("freePercent").toDouble(), 0.0, 100.0)));
    if (pressure >= 4) return tile(QStringLiteral("Critical"), "red", value, QStringLiteral("free"), sub);
    if (pressure >= 2) return tile(QStringLiteral("Tight"), "amber", value, QStringLiteral("free"), sub);
    return tile(QStringLiteral("Fine"), "green", value, QStringLiteral("free"), sub);
}

QVariantMap HomeWords::disk(const QVariantMap& disk, bool scanned, qint64 cleanable, const QVariant& pace) {
    const qint64 available = disk.value("available").toLongLong();
    QString sub = scanned ? QStringLiteral("%1 can go").arg(bytes(cleanable)) : QStringLiteral("Measuring what can go");
    const QVariantMap p = pace.toMap();
    if (present(pace) && p.value("filling").toBool()) {
        const double perDay = p.value("bytesPerDay").toDouble();
        const int days = perDay > 0 ? static_cast<int>(double(available) / perDay) : 0;
        const QString forecast = days >= 1 ? QStringLiteral("About %1 at your pace").arg(q(Fmt::days(days)))
                                           : QStringLiteral("Could fill within a day");
        sub = forecast + QStringLiteral(", ") + sub.left(1).toLower() + sub.mid(1);
    }
    const QString value = bytes(available);
    const QString unit = QStringLiteral("free of %1").arg(bytes(disk.value("total").toLongLong()));
    if (available < 5 * GB) return tile(QStringLiteral("Very low"), "red", value, unit, sub);
    if (available < AppModel::warnBelow) return tile(QStringLiteral("Low"), "amber", value, unit, sub);
    return tile(QStringLiteral("OK"), "green", value, unit, sub);
}

QVariantList HomeWords::processorBar(ListModel* apps, int cores, const QVariant& cpu) {
    // Each app's share of the whole processor; what no app row holds is the rest.
    const double whole = std::max(1, cores);
    QVariantList out;
    double counted = 0;
    for (int row = 0; apps && row < apps->count() && out.size() < 6; ++row) {
        const QVariantMap app = apps->get(row);
        const double share = std::clamp(app.value("cores").toDouble() / whole * 100, 0.0, 100.0 - counted);
        if (share < 0.5) continue;
        counted += share;
        out << segment(app.value("id").toString(), share, out.isEmpty() ? QStringLiteral("orange") : QStringLiteral("amber"));
    }
    const double busy = present(cpu) ? std::clamp(cpu.toDouble(), 0.0, 100.0) : counted;
    out << segment(QStringLiteral("rest"), busy - counted, QStringLiteral("rest"));
    return out;
}

QVariantList HomeWords::memoryBar(const QVariantMap& vitals) {
    const double free = std::clamp(vitals.value("freePercent").toDouble(), 0.0, 100.0);
    const int pressure = vitals.value("pressure").toInt();
    return {segment(QStringLiteral("used"), 100 - free, pressure >= 4 ? "red" : pressure >= 2 ? "amber" : "blue"),
            segment(QStringLiteral("free"), free, QStringLiteral("green"))};
}

QVariantList HomeWords::diskBar(const QVariantMap& disk, qint64 cleanable) {
    const qint64 total = std::max<qint64>(0, disk.value("total").toLongLong());
    const qint64 available = std::clamp<qint64>(disk.value("available").toLongLong(), 0, total);
    const qint64 used = total - available;
    const qint64 can = std::clamp<qint64>(cleanable, 0, used);
    return {segment(QStringLiteral("other"), double(used - can), QStringLiteral("other")),
            segment(QStringLiteral("can"), double(can), QStringLiteral("amber")),
            segment(QStringLiteral("free"), double(available), QStringLiteral("green"))};
}

QString HomeWords::checking(const QVariant& scanProgress) {
    if (!present(scanProgress)) return QStringLiteral("Starting");
    const QVariantMap p = scanProgress.toMap();
    if (p.value("stage").toString() == QLatin1String("measuring"))
        return QStringLiteral("Measuring %1 of %2").arg(p.value("done").toInt()).arg(p.value("total").toInt());
    const int checked = p.value("checked").toInt();
    if (checked < 1) return QStringLiteral("Starting");
    return QStringLiteral("%1 folders looked at").arg(Formatter().grouped(checked));
}

QString HomeWords::allClear(int doneToday) {
    const QString watching = say("Sorrelin keeps watching and tells you when something starts to slow your Mac.");
    if (doneToday > 0) return QStringLiteral("Here is what you fixed today. ") + watching;
    return watching;
}

QVariantMap HomeWords::action(const QVariantMap& rec) {
    const QString state = rec.value("state").toString();
    if (state == QLatin1String("queued")) return {{"text", QStringLiteral("Waiting its turn")}, {"busy", false}, {"done", false}};
    if (state == QLatin1String("busy")) return {{"text", rec.value("busyLabel")}, {"busy", true}, {"done", false}};
    if (state == QLatin1String("done")) return {{"text", rec.value("doneLabel")}, {"busy", false}, {"done", true}};
    if (rec.value("armed").toBool())
        return {{"text", QStringLiteral("Click again to ") + rec.value("shortLabel").toString().toLower()}, {"busy", false}, {"done", false}};
    return {{"text", rec.value("actionLabel")}, {"busy", false}, {"done", false}};
}

QVariantMap HomeWords::impact(const QVariantMap& rec, const QVariantMap& vitals, const QVariantMap& disk, ListModel* apps,
                              qint64 physicalMemory, int cores) {
    const QString kind = rec.value("impact").toString();
    const qint64 gain = std::max<qint64>(0, rec.value("impactBytes").toLongLong());
    if (kind == QLatin1String("cpu")) {
        const double share = std::clamp(rec.value("cpuShare").toDouble(), 0.0, 100.0);
        QVariantList parts = processorBar(apps, cores, vitals.value("cpu"));
        // The advice's own share stands first and marked; the others as they are.
        QVariantList out{segment(QStringLiteral("gain"), share, QStringLiteral("orange"))};
        double others = 0;
        for (const QVariant& v : parts) {
            const QVariantMap s = v.toMap();
            if (s.value("id").toString() == rec.value("impactKey").toString()) continue;
            others += s.value("value").toDouble();
        }
        out << segment(QStringLiteral("rest"), std::min(others, 100 - share), QStringLiteral("rest"));
        return {{"label", QStringLiteral("Processor")}, {"figure", QStringLiteral("%1%").arg(std::lround(share))},
                {"segments", out}, {"total", 100}};
    }
    if (kind == QLatin1String("memory")) {
        const qint64 memory = std::max<qint64>(0, rec.value("memory").toLongLong());
        const double total = double(std::max<qint64>(physicalMemory, memory));
        const double used = total * (100 - std::clamp(vitals.value("freePercent").toDouble(), 0.0, 100.0)) / 100;
        return {{"label", QStringLiteral("Memory in use")}, {"figure", bytes(memory)},
                {"segments", QVariantList{segment(QStringLiteral("gain"), double(memory), QStringLiteral("blue")),
                                          segment(QStringLiteral("rest"), used - double(memory), QStringLiteral("rest"))}},
                {"total", total}};
    }
    if (kind == QLatin1String("swap")) {
        const qint64 swap = std::max<qint64>(0, vitals.value("swapUsed").toLongLong());
        const qint64 total = std::max<qint64>(vitals.value("swapTotal").toLongLong(), swap);
        return {{"label", QStringLiteral("Swap on your disk")}, {"figure", bytes(swap)},
                {"segments", QVariantList{segment(QStringLiteral("swap"), double(swap), QStringLiteral("orange"))}},
                {"total", double(std::max<qint64>(total, 1))}};
    }
    // Free space: what is free now, and what the advice would add to it.
    const qint64 total = std::max<qint64>(0, disk.value("total").toLongLong());
    const qint64 available = std::clamp<qint64>(disk.value("available").toLongLong(), 0, total);
    return {{"label", QStringLiteral("Free space")}, {"figure", QStringLiteral("+") + bytes(gain)},
            {"segments", QVariantList{segment(QStringLiteral("free"), double(available), QStringLiteral("green")),
                                      segment(QStringLiteral("gain"), double(std::min(gain, total - available)), QStringLiteral("amber"))}},
            {"total", double(std::max<qint64>(total, 1))}};
}

QString HomeWords::batchButton(const QVariant& batch, int safeCount) {
    if (present(batch)) {
        const QVariantMap b = batch.toMap();
        return QStringLiteral("Working, %1 of %2").arg(b.value("done").toInt()).arg(b.value("total").toInt());
    }
    if (safeCount < 1) return {};
    return QStringLiteral("Do the %1 safe ones").arg(safeCount);
}

QString HomeWords::batchTip(const QVariantList& safe) {
    QStringList phrases;
    for (const QVariant& v : safe) {
        const QVariantMap rec = v.toMap();
        const QString title = rec.value("title").toString();
        if (rec.value("action").toString() == QLatin1String("stopLeftovers"))
            phrases << QStringLiteral("stops ") + (title.startsWith(QLatin1String("Stop ")) ? title.mid(5) : title);
        else if (title.toLower().startsWith(QLatin1String("quit")))
            phrases << QStringLiteral("quits ") + title.mid(5);
        else
            phrases << title.toLower();
    }
    if (phrases.isEmpty()) return {};
    QString joined = phrases.last();
    if (phrases.size() > 1) joined = phrases.mid(0, phrases.size() - 1).join(QStringLiteral(", ")) + QStringLiteral(" and ") + joined;
    joined[0] = joined[0].toUpper();
    return joined + QStringLiteral(". None of them has anything to save.");
}

QVariantList HomeWords::rows(ListModel* list) {
    QVariantList out;
    for (int row = 0; list && row < list->count(); ++row) out << list->get(row);
    return out;
}
