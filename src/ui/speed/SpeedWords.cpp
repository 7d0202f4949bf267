#include "ui/speed/SpeedWords.h"

#include "foundation/Fmt.h"
#include "foundation/PlatformWords.h"
#include "foundation/Text.h"

#include <algorithm>
#include <cmath>

namespace SpeedWords {

namespace {

std::string say(const std::string& s) { return PlatformWords::say(s); }
std::string plural(long long n, const char* one, const char* many) { return n == 1 ? one : many; }

} // namespace

Pill state(int slowApps, bool memoryTight) {
    if (slowApps > 0)
        return {Text::format("Slow: %d %s busy in the background", slowApps, slowApps == 1 ? "app" : "apps"), "", "amberText"};
    if (memoryTight) return {"Memory tight", "memorychip", "amberText"};
    return {"Running well", "checkmark", "greenText"};
}

std::string cpuValue(const std::optional<double>& cpu) {
    if (!cpu || !std::isfinite(*cpu)) return "\u2026";
    return Text::format("%lld%%", std::llround(std::clamp(*cpu, 0.0, 100.0)));
}

std::string cpuInfo(int cores) {
    return Text::format("Measured across all %d cores. 100%% would mean every core is busy. Quitting an app takes its share off at once.",
                        cores);
}

std::string cpuSub(int cores) { return Text::format("Coloured by app, %d cores", cores); }

std::optional<std::string> freed(double share) {
    if (!std::isfinite(share) || share < 1) return std::nullopt;
    return Text::format("%lld%% freed", std::llround(share));
}

Memory memory(const Vitals& v, int64_t physicalMemory) {
    Memory m;
    const std::string compressed = Fmt::bytes(v.compressed);
    if (v.pressure < 2) {
        m.word = "Fine";
        m.fg = "greenText";
        m.bar = "green";
        m.info = say("macOS has room to spare.");
        // Without zram or zswap nothing is squeezed, and a sentence about it would say nothing.
        if (v.compressed > 0) m.info += " It squeezes " + compressed + " of memory to fit more in, which is normal.";
    } else {
        m.word = v.pressure < 4 ? "Tight" : "Critical";
        m.fg = v.pressure < 4 ? "amberText" : "red";
        m.bar = v.pressure < 4 ? "amber" : "red";
        m.info = say("Your apps want more than your " + Fmt::ram(physicalMemory) + ", so macOS squeezes memory (" + compressed +
                     " of it now) and moves the rest to disk. Switching apps then waits on the disk. That is the lag you feel.");
    }
    m.value = std::to_string(std::clamp(v.freePercent, 0, 100)) + "%";
    m.sub = compressed + " squeezed of " + Fmt::ram(physicalMemory);
    return m;
}

int uptimeDays(const Vitals& v, TimePoint now) { return std::max(0, static_cast<int>(secondsBetween(v.boot, now) / 86400)); }

Swap swap(const Vitals& v, int days) {
    Swap s;
    s.value = Fmt::bytes(v.swapUsed);
    s.warn = v.swapUsed >= 1'000'000'000;
    s.sub = v.swapTotal < 1 ? "None in use" : "of " + Fmt::bytes(v.swapTotal) + ", on your disk";
    s.info = say("Memory that did not fit in RAM, parked on your disk. macOS has written " + Fmt::bytes(v.swappedOut) +
                 " of it since you last restarted, " + std::to_string(days) + plural(days, " day", " days") +
                 " ago. A restart empties it.");
    return s;
}

Uptime uptime(const Vitals& v, TimePoint now) {
    Uptime u;
    const int days = uptimeDays(v, now);
    if (days < 1) {
        const long long hours = std::max<long long>(0, static_cast<long long>(secondsBetween(v.boot, now) / 3600));
        u.value = std::to_string(hours);
        u.unit = plural(hours, "hour", "hours");
    } else {
        u.value = std::to_string(days);
        u.unit = plural(days, "day", "days");
    }
    // The time of day: measured against the boot's own day, the clock never falls back to the date.
    u.sub = "Since " + Fmt::dayMonth(v.boot) + ", " + Fmt::clock(v.boot, v.boot);
    if (v.thermal < 2) {
        u.heat = {"Heat normal", "thermometer.medium", "greenText"};
        u.heatInfo = say("macOS reports no heat limits, so nothing is being slowed down to cool off.");
    } else {
        u.heat = {v.thermal == 2 ? "Hot" : "Too hot", "thermometer.medium", v.thermal == 2 ? "orange" : "red"};
        u.heatInfo = say("macOS is slowing the processor to cool down. Quitting busy apps helps.");
    }
    return u;
}

std::string whoInfo(bool memoryMode, int cores, int64_t physicalMemory) {
    if (!memoryMode)
        return Text::format("Each app with every helper it runs, measured over the last few seconds. 100%% is all %d cores.", cores);
    // The other system's own monitor counts memory its way; ours is each process's private memory.
    return say("Private memory of each app, with helpers added to their app. It can add up to more than your " +
               Fmt::ram(physicalMemory) + " because some of it is squeezed or in swap.");
}

std::string whoTotal(bool memoryMode, const std::optional<double>& cpu, int64_t counted, int64_t physicalMemory) {
    if (memoryMode) return say(Fmt::bytes(counted) + " counted on a " + Fmt::ram(physicalMemory) + " Mac");
    const double c = cpu && std::isfinite(*cpu) ? std::clamp(*cpu, 0.0, 100.0) : 0;
    return Text::format("%lld%% of the processor busy", std::llround(c));
}

} // namespace SpeedWords
