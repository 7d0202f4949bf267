#pragma once
// Strict reading of the program's JSON files. A missing required key or a value of the wrong
// type throws `JsonRead::Invalid`; each file's loader catches it and reads the whole file as
// empty, so the exception never leaves the loader.
#include "foundation/Time.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>

namespace JsonRead {

struct Invalid : std::runtime_error {
    Invalid() : std::runtime_error("invalid file") {}
};

using nlohmann::json;

// A required key of an object.
[[nodiscard]] const json& need(const json& j, const char* key);
// An optional key: null when absent or null.
[[nodiscard]] const json* maybe(const json& j, const char* key);
[[nodiscard]] std::string text(const json& v);
// A whole number; a float with a fraction is refused.
[[nodiscard]] int64_t integer(const json& v);
// A finite number: a literal too large for a double (1e400) is refused, not read as infinity.
[[nodiscard]] double number(const json& v);
// A count: a whole number from 0 to the largest int.
[[nodiscard]] int count(const json& v);
[[nodiscard]] bool boolean(const json& v);
[[nodiscard]] const json& array(const json& v);
// Seconds since 1970. A number outside the years 1970 to 9999 is a bad field and gives nothing,
// for the caller to drop; anything but a number fails the file.
[[nodiscard]] std::optional<TimePoint> date(const json& v);
// An object of dates by key; an entry with a bad date is dropped.
[[nodiscard]] std::map<std::string, TimePoint> dates(const json& v);
[[nodiscard]] json encodeDates(const std::map<std::string, TimePoint>& m);

} // namespace JsonRead
