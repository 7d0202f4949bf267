#pragma once
// "history.json" as text: its limits, its encoding and its strict decoding.
//
// Every list of the file is capped, and the caps are kept at each write, so the largest file
// the writer can make is known (`largestFile`) and lies below what the reader accepts
// (`readLimit`): a save is never refused by the next load.
#include "history/HistoryData.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace HistoryFile {

// 60 days of readings at one per 1,800 seconds, both ends included.
inline constexpr std::size_t maxSamples = 2'881;
// The cleans of 90 days: more than twenty a day.
inline constexpr std::size_t maxCleans = 2'000;
// Snoozes and alerts are kept for ever; past these counts the oldest go, which are the ones
// that long stopped having any effect.
inline constexpr std::size_t maxSnoozed = 256;
inline constexpr std::size_t maxAlerted = 256;
// Refill tracking, one entry per clean item, 30 days.
inline constexpr std::size_t maxCacheClears = 512;
inline constexpr std::size_t maxFastRefill = 512;
inline constexpr std::size_t maxGrowthDays = 14;
inline constexpr std::size_t maxGrowthTop = 5;
inline constexpr std::size_t maxGrowthBiggest = 6;
// A key is an id (a path with a prefix at most): a longer one is not kept, since a cut id
// would name something else. Display texts longer than their cap are cut.
inline constexpr std::size_t maxKeyBytes = 4'352;
inline constexpr std::size_t maxLabelBytes = 512;
inline constexpr std::size_t maxNameBytes = 1'024;
inline constexpr std::size_t maxLocationBytes = 4'352;

namespace detail {
// The worst case of each piece as the encoder writes it: a text whose every byte is a control
// character (six bytes as \u00XX) within its quotes; a number of 24 characters.
constexpr std::size_t number = 24;
constexpr std::size_t text(std::size_t bytes) { return 2 + 6 * bytes; }
// `"key":` and the comma before the next member or element.
constexpr std::size_t member(std::size_t keyLength, std::size_t value) { return keyLength + 4 + value; }
constexpr std::size_t list(std::size_t count, std::size_t element) { return 2 + count * (element + 1); }

constexpr std::size_t sample = 2 + member(4, number) + member(4, number) + member(4, number);
constexpr std::size_t clean = 2 + member(4, number) + member(5, number) + member(5, text(maxLabelBytes));
constexpr std::size_t dateEntry = text(maxKeyBytes) + 1 + number + 1;
constexpr std::size_t clearEntry = text(maxKeyBytes) + 1 + 2 + member(4, number) + member(4, number) + 1;
constexpr std::size_t place = 2 + member(4, text(maxNameBytes)) + member(8, text(maxLocationBytes)) +
                              member(5, number) + member(6, number);
constexpr std::size_t day = 2 + member(4, number) + member(7, list(4, number)) + member(3, list(maxGrowthTop, place));
constexpr std::size_t growth = 2 + member(4, number) + member(4, list(maxGrowthDays, day)) +
                               member(7, list(maxGrowthBiggest, place));
} // namespace detail

inline constexpr std::size_t largestFile =
    2 + detail::member(7, detail::list(maxSamples, detail::sample)) +
    detail::member(6, detail::list(maxCleans, detail::clean)) +
    detail::member(7, 2 + maxSnoozed * detail::dateEntry) + detail::member(7, 2 + maxAlerted * detail::dateEntry) +
    detail::member(6, detail::growth) + detail::member(15, detail::number) +
    detail::member(11, 2 + maxCacheClears * detail::clearEntry) +
    detail::member(10, 2 + maxFastRefill * detail::dateEntry);

// What the reader accepts; a larger file reads as broken.
inline constexpr std::size_t readLimit = std::size_t{64} << 20;
static_assert(largestFile < readLimit, "the reader must take every file the writer can write");

// The data cut to the caps: the newest samples and cleans, the entries with the latest dates,
// ids no longer than `maxKeyBytes`, display texts cut at a character's edge.
[[nodiscard]] HistoryData bounded(HistoryData data);

// The file's text of `bounded(data)`: no pretty-printing, dates as seconds since 1970, invalid
// UTF-8 as U+FFFD.
[[nodiscard]] std::string encode(const HistoryData& data);

// Nothing unless every required key is there with its type. A date outside the years 1970 to
// 9999 is a bad field: the sample, clean or entry that holds it is dropped, an optional date
// is left absent, and a growth report with one is dropped whole.
[[nodiscard]] std::optional<HistoryData> decode(std::string_view text);

} // namespace HistoryFile
