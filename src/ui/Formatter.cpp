#include "ui/Formatter.h"

#include "foundation/Fmt.h"

#include <QLocale>

#include <cmath>
#include <limits>

namespace {

QString q(const std::string& s) { return QString::fromStdString(s); }
double finiteOr0(double v) { return std::isfinite(v) ? v : 0; }

} // namespace

Formatter::Formatter(QObject* parent) : QObject(parent) {}

int64_t Formatter::toBytes(double n) {
    if (std::isnan(n)) return 0;
    // 2^63 is exactly representable; anything at or past it would overflow the conversion.
    constexpr double limit = 9223372036854775808.0;
    if (n >= limit) return std::numeric_limits<int64_t>::max();
    if (n <= -limit) return std::numeric_limits<int64_t>::min();
    return static_cast<int64_t>(n);
}

TimePoint Formatter::toTimePoint(const QDateTime& date) {
    return TimePoint(std::chrono::milliseconds(date.toMSecsSinceEpoch()));
}

QString Formatter::bytes(double n) const { return q(Fmt::bytes(toBytes(n))); }
QString Formatter::menuBytes(double n) const { return q(Fmt::menuBytes(toBytes(n))); }
QString Formatter::ram(double n) const { return q(Fmt::ram(toBytes(n))); }
QString Formatter::percent(double p) const { return q(Fmt::percent(finiteOr0(p))); }
QString Formatter::duration(double seconds) const { return q(Fmt::duration(finiteOr0(seconds))); }
QString Formatter::minutes(int m) const { return q(Fmt::minutes(m)); }
QString Formatter::days(int n) const { return q(Fmt::days(n)); }

QString Formatter::grouped(double n) const {
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(static_cast<qlonglong>(toBytes(finiteOr0(n))));
}

QString Formatter::ago(const QDateTime& date) const { return date.isValid() ? q(Fmt::ago(toTimePoint(date))) : QString(); }
QString Formatter::clock(const QDateTime& date) const { return date.isValid() ? q(Fmt::clock(toTimePoint(date))) : QString(); }
QString Formatter::dayMonth(const QDateTime& date) const { return date.isValid() ? q(Fmt::dayMonth(toTimePoint(date))) : QString(); }
QString Formatter::age(const QDateTime& date) const { return date.isValid() ? q(Fmt::age(toTimePoint(date))) : QString(); }
QString Formatter::day(const QDateTime& date) const { return date.isValid() ? q(Fmt::day(toTimePoint(date))) : QString(); }
