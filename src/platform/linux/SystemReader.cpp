#include "platform/linux/SystemReader.h"

#include "foundation/FS.h"
#include "platform/SwapAreas.h"
#include "platform/linux/ProcText.h"

#include <algorithm>

namespace SystemReader {

namespace {

std::optional<int64_t> readNumber(const std::string& path) {
    auto text = FS::readText(path, 256);
    if (!text) return std::nullopt;
    return ProcText::number(*text);
}

std::string readWord(const std::string& path) {
    auto text = FS::readText(path, 256);
    if (!text) return {};
    std::string s = *text;
    while (!s.empty() && (s.back() == '\n' || s.back() == ' ')) s.pop_back();
    return s;
}

int zoneState(const std::string& zone) {
    auto temp = readNumber(zone + "/temp");
    if (!temp) return 0;
    int state = 0;
    for (int i = 0; i < 64; ++i) {
        const std::string trip = zone + "/trip_point_" + std::to_string(i);
        std::string type = readWord(trip + "_type");
        if (type.empty()) break;
        auto at = readNumber(trip + "_temp");
        // Firmware marks unused trip points with 0 or a negative figure.
        if (!at || *at <= 0) continue;
        if (type == "critical" || type == "hot") {
            if (*temp >= *at) state = std::max(state, 3);
        } else if (type == "passive") {
            if (*temp >= *at) state = std::max(state, 2);
            else if (*temp >= *at - 10'000) state = std::max(state, 1); // millidegrees
        }
    }
    return state;
}

bool processorCooling(const std::string& device) {
    std::string type = readWord(device + "/type");
    if (!(type.starts_with("Processor") || type.starts_with("cpufreq") || type.starts_with("thermal-cpufreq") ||
          type == "intel_powerclamp"))
        return false;
    auto state = readNumber(device + "/cur_state");
    return state && *state > 0;
}

} // namespace

int pressureLevel(const std::string& psiText, bool havePsi, int freePercent) {
    if (havePsi) {
        auto p = ProcText::pressure(psiText);
        if (!p) return 1;
        if (p->full10 >= 10) return 4;
        if (p->some10 >= 10) return 2;
        return 1;
    }
    if (freePercent < 3) return 4;
    if (freePercent < 10) return 2;
    return 1;
}

int thermal(const std::string& thermalRoot) {
    int state = 0;
    for (const auto& name : FS::children(thermalRoot)) {
        const std::string path = thermalRoot + "/" + name;
        if (name.starts_with("thermal_zone")) state = std::max(state, zoneState(path));
        else if (name.starts_with("cooling_device") && processorCooling(path)) state = std::max(state, 2);
    }
    return state;
}

SystemReading read(const std::string& procRoot, const std::string& sysRoot, int64_t pageSize) {
    SystemReading r;
    r.bootDate = Clock::now();

    if (auto stat = FS::readText(procRoot + "/stat", 1 << 20)) {
        if (auto cpu = ProcText::cpu(*stat)) {
            r.cpuBusy = cpu->busy;
            r.cpuTotal = cpu->total;
        }
        if (auto boot = ProcText::bootTime(*stat)) r.bootDate = Clock::from_time_t(static_cast<std::time_t>(*boot));
    }

    std::map<std::string, int64_t, std::less<>> mem;
    if (auto text = FS::readText(procRoot + "/meminfo", 1 << 16)) mem = ProcText::meminfo(*text);
    auto field = [&](std::string_view key) -> std::optional<int64_t> {
        auto it = mem.find(key);
        if (it == mem.end()) return std::nullopt;
        return it->second;
    };
    auto total = field("MemTotal");
    auto available = field("MemAvailable");
    if (total && available && *total > 0)
        r.freePercent = static_cast<int>(std::clamp<int64_t>(*available * 100 / *total, 0, 100));

    auto psi = FS::readText(procRoot + "/pressure/memory", 4096);
    bool haveMemInfo = total && available;
    if (psi) r.pressureLevel = pressureLevel(*psi, true, r.freePercent);
    else if (haveMemInfo) r.pressureLevel = pressureLevel({}, false, r.freePercent);

    int64_t compressed = field("Zswap").value_or(0);
    for (const auto& dev : FS::children(sysRoot + "/block")) {
        if (!dev.starts_with("zram")) continue;
        if (auto text = FS::readText(sysRoot + "/block/" + dev + "/mm_stat", 4096))
            if (auto used = ProcText::zramUsed(*text)) compressed += *used;
    }
    r.compressed = compressed;

    // Swap on a disk only: a zram device is memory, and pages that zswap holds compressed
    // occupy swap slots without having been written.
    if (auto text = FS::readText(procRoot + "/swaps", 1 << 16)) {
        int64_t size = 0, used = 0;
        for (const auto& area : SwapAreas::parse(*text)) {
            if (SwapAreas::inMemory(area)) continue;
            size += area.size;
            used += area.used;
        }
        r.swapTotal = size;
        r.swapUsed = std::max<int64_t>(0, used - field("Zswapped").value_or(0));
    }

    if (auto text = FS::readText(procRoot + "/vmstat", 1 << 16))
        if (auto out = ProcText::vmstat(*text, "pswpout")) r.swappedOut = *out * pageSize;

    r.thermal = thermal(sysRoot + "/class/thermal");
    return r;
}

} // namespace SystemReader
