#include "foundation/Fmt.h"

#include "foundation/Text.h"

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <ctime>

namespace Fmt {

namespace {

const char* const monthNames[12] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                    "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

std::tm localParts(TimePoint t) {
    std::time_t tt = Clock::to_time_t(t);
    // to_time_t truncates towards zero; dates before 1970 still land in the right second.
    if (t < Clock::from_time_t(tt)) --tt;
    std::tm parts{};
    localtime_r(&tt, &parts);
    return parts;
}

// Days since 1970 of the local calendar day that holds t.
long localDayNumber(TimePoint t) {
    std::tm p = localParts(t);
    using namespace std::chrono;
    year_month_day ymd{year{p.tm_year + 1900}, month{static_cast<unsigned>(p.tm_mon + 1)},
                       std::chrono::day{static_cast<unsigned>(p.tm_mday)}};
    return sys_days(ymd).time_since_epoch().count();
}

std::string monthDay(const std::tm& p) { return Text::format("%s %d", monthNames[p.tm_mon], p.tm_mday); }

void requireFinite(double v) {
    // A non-finite figure here is a fault in the caller, not a reading: stop loudly.
    if (!std::isfinite(v)) std::abort();
}

long long wholeSeconds(TimePoint date, TimePoint now) {
    return static_cast<long long>(std::trunc(secondsBetween(date, now)));
}

} // namespace

std::string bytes(int64_t n) {
    if (n <= 0) return "0 bytes";
    double d = static_cast<double>(n);
    if (n >= 1'000'000'000'000) return Text::format("%.1f TB", d / 1e12);
    if (n >= 100'000'000'000) return Text::format("%.0f GB", d / 1e9);
    if (n >= 1'000'000'000) return Text::format("%.1f GB", d / 1e9);
    if (n >= 1'000'000) return Text::format("%.0f MB", d / 1e6);
    if (n >= 1'000) return Text::format("%.0f KB", d / 1000);
    return Text::format("%lld bytes", static_cast<long long>(n));
}

std::string menuBytes(int64_t n) {
    if (n < 0) n = 0;
    double g = static_cast<double>(n) / 1e9;
    return g < 10 ? Text::format("%.1f GB", g) : Text::format("%.0f GB", g);
}

std::string ago(TimePoint date, TimePoint now) {
    double s = secondsBetween(date, now);
    if (s < 60) return "just now";
    long long whole = wholeSeconds(date, now);
    if (s < 3600) return Text::format("%lld min ago", whole / 60);
    if (s < 86400) return Text::format("%lld h ago", whole / 3600);
    long long d = whole / 86400;
    if (d == 1) return "yesterday";
    return Text::format("%lld days ago", d);
}

std::string clock(TimePoint date, TimePoint now) {
    std::tm p = localParts(date);
    if (localDayNumber(date) == localDayNumber(now)) return Text::format("%d:%02d", p.tm_hour, p.tm_min);
    return monthDay(p);
}

std::string dayMonth(TimePoint date) { return monthDay(localParts(date)); }

std::string minutes(int m) {
    if (m > 59) {
        int h = m / 60, r = m % 60;
        return r != 0 ? Text::format("%d h %d min", h, r) : Text::format("%d h", h);
    }
    if (m == 1) return "1 minute";
    return Text::format("%d minutes", m);
}

std::string duration(double seconds) {
    requireFinite(seconds);
    long long t = std::llround(seconds);
    if (t < 60) return Text::format("%lld s", t);
    if (t > 3599) {
        long long h = t / 3600, r = t % 3600;
        if (r < 60) return Text::format("%lld h", h);
        return Text::format("%lld h %lld min", h, r / 60);
    }
    return Text::format("%lld min", t / 60);
}

std::string age(TimePoint date, TimePoint now) {
    double s = secondsBetween(date, now);
    long long whole = wholeSeconds(date, now);
    if (s < 3600) {
        long long m = whole / 60;
        return m < 2 ? "1 minute" : Text::format("%lld minutes", m);
    }
    if (s < 172800) {
        long long h = whole / 3600;
        return h == 1 ? "1 hour" : Text::format("%lld hours", h);
    }
    return Text::format("%lld days", whole / 86400);
}

std::string days(int n) { return n == 1 ? "1 day" : Text::format("%d days", n); }

std::string ram(int64_t n) {
    if (n < 0) n = 0;
    double g = static_cast<double>(n) * 9.313225746154785e-10;
    double r = std::round(g);
    if (std::fabs(g - r) < 0.05) return Text::format("%.0f GB", r);
    return Text::format("%.1f GB", g);
}

std::string percent(double p) {
    requireFinite(p);
    if (p <= 0) return "0%";
    if (p < 1) return "under 1%";
    return Text::format("%lld%%", std::llround(p));
}

std::string day(TimePoint date, TimePoint now) {
    // "today" and "yesterday" go by the real calendar day, whatever `now` says.
    long long realToday = localDayNumber(Clock::now());
    long long dateDay = localDayNumber(date);
    if (dateDay == realToday) return "today";
    if (dateDay == realToday - 1) return "yesterday";
    long long count = localDayNumber(now) - dateDay;
    if (count > 6) {
        std::tm p = localParts(date);
        std::tm n = localParts(now);
        if (p.tm_year == n.tm_year) return monthDay(p);
        return Text::format("%s, %d", monthDay(p).c_str(), p.tm_year + 1900);
    }
    return Text::format("%lld days ago", count);
}

} // namespace Fmt
