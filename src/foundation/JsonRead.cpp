#include "foundation/JsonRead.h"

#include <cmath>
#include <limits>

namespace JsonRead {

const json& need(const json& j, const char* key) {
    if (!j.is_object()) throw Invalid();
    auto it = j.find(key);
    if (it == j.end()) throw Invalid();
    return *it;
}

const json* maybe(const json& j, const char* key) {
    if (!j.is_object()) return nullptr;
    auto it = j.find(key);
    if (it == j.end() || it->is_null()) return nullptr;
    return &*it;
}

std::string text(const json& v) {
    if (!v.is_string()) throw Invalid();
    return v.get<std::string>();
}

int64_t integer(const json& v) {
    if (v.is_number_integer()) return v.get<int64_t>();
    if (v.is_number_float()) {
        double d = v.get<double>();
        if (!std::isfinite(d) || std::trunc(d) != d || std::fabs(d) > 9.0e18) throw Invalid();
        return static_cast<int64_t>(d);
    }
    throw Invalid();
}

double number(const json& v) {
    if (!v.is_number()) throw Invalid();
    double d = v.get<double>();
    if (!std::isfinite(d)) throw Invalid();
    return d;
}

int count(const json& v) {
    int64_t n = integer(v);
    if (n < 0 || n > std::numeric_limits<int>::max()) throw Invalid();
    return static_cast<int>(n);
}

bool boolean(const json& v) {
    if (!v.is_boolean()) throw Invalid();
    return v.get<bool>();
}

const json& array(const json& v) {
    if (!v.is_array()) throw Invalid();
    return v;
}

std::optional<TimePoint> date(const json& v) { return storedDate(number(v)); }

std::map<std::string, TimePoint> dates(const json& v) {
    if (!v.is_object()) throw Invalid();
    std::map<std::string, TimePoint> out;
    for (const auto& [k, d] : v.items())
        if (auto when = date(d)) out[k] = *when;
    return out;
}

json encodeDates(const std::map<std::string, TimePoint>& m) {
    json j = json::object();
    for (const auto& [k, d] : m) j[k] = secondsSince1970(d);
    return j;
}

} // namespace JsonRead
