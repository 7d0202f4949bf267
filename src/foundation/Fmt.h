#pragma once
// Every number, size, date and age that a person reads passes through here.
#include "foundation/Time.h"

#include <cstdint>
#include <string>

namespace Fmt {

[[nodiscard]] std::string bytes(int64_t n);
[[nodiscard]] std::string menuBytes(int64_t n);
[[nodiscard]] std::string ago(TimePoint date, TimePoint now = Clock::now());
[[nodiscard]] std::string clock(TimePoint date, TimePoint now = Clock::now());
[[nodiscard]] std::string dayMonth(TimePoint date);
[[nodiscard]] std::string minutes(int m);
[[nodiscard]] std::string duration(double seconds);
[[nodiscard]] std::string age(TimePoint date, TimePoint now = Clock::now());
[[nodiscard]] std::string days(int n);
[[nodiscard]] std::string ram(int64_t n);
[[nodiscard]] std::string percent(double p);
[[nodiscard]] std::string day(TimePoint date, TimePoint now = Clock::now());

} // namespace Fmt
