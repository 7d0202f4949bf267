#pragma once
// What the Speed tab says about the machine's figures: the state pill, the four vital cards and
// the who panel's heading lines. Every sentence passes through the platform's words, so the
// tab speaks of "the computer" and "the system".
#include "monitor/Vitals.h"

#include <cstdint>
#include <optional>
#include <string>

namespace SpeedWords {

// A short label with its colour, a palette name.
struct Pill {
    std::string text;
    std::string symbol;
    std::string tint;
};

struct Memory {
    std::string word;  // "Fine", "Tight", "Critical"
    std::string fg;    // the word's colour
    std::string bar;   // the card's accent
    std::string info;  // the pop-over
    std::string value; // "41%"
    std::string sub;
};

struct Swap {
    std::string value;
    bool warn = false; // a gigabyte or more is in swap
    std::string sub;
    std::string info;
};

struct Uptime {
    std::string value; // whole hours below a day, days otherwise
    std::string unit;
    std::string sub;
    Pill heat;
    std::string heatInfo;
};

// Slow background apps come first; leftovers never make the machine read as slow.
[[nodiscard]] Pill state(int slowApps, bool memoryTight);

// The processor card: the busy figure, its pop-over and sub-line, and what quits just gave back.
[[nodiscard]] std::string cpuValue(const std::optional<double>& cpu);
[[nodiscard]] std::string cpuInfo(int cores);
[[nodiscard]] std::string cpuSub(int cores);
// "{sum}% freed" when the quits of the last three minutes gave back at least one percent.
[[nodiscard]] std::optional<std::string> freed(double share);
inline constexpr double freedSeconds = 180;

[[nodiscard]] Memory memory(const Vitals& v, int64_t physicalMemory);
[[nodiscard]] Swap swap(const Vitals& v, int uptimeDays);
[[nodiscard]] Uptime uptime(const Vitals& v, TimePoint now);
[[nodiscard]] int uptimeDays(const Vitals& v, TimePoint now);

// The who panel's pop-over and total line for a mode ("cpu" or "memory").
[[nodiscard]] std::string whoInfo(bool memoryMode, int cores, int64_t physicalMemory);
[[nodiscard]] std::string whoTotal(bool memoryMode, const std::optional<double>& cpu, int64_t counted, int64_t physicalMemory);

} // namespace SpeedWords
