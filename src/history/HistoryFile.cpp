#include "history/HistoryFile.h"

#include "foundation/JsonRead.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <stdexcept>
#include <utility>

using nlohmann::json;

namespace HistoryFile {

namespace {

using namespace JsonRead;

// At most `limit` bytes, never ending inside a character.
void cut(std::string& s, std::size_t limit) {
    if (s.size() <= limit) return;
    std::size_t end = limit;
    while (end > 0 && (static_cast<unsigned char>(s[end]) & 0xC0) == 0x80) --end;
    s.resize(end);
}

// Keeps the newest `limit` records of a list kept oldest first.
template <typename T>
void keepNewest(std::vector<T>& list, std::size_t limit) {
    if (list.size() > limit) list.erase(list.begin(), list.end() - static_cast<std::ptrdiff_t>(limit));
}

// Drops ids too long to keep, then the entries with the earliest dates past `limit`.
template <typename V, typename DateOf>
void boundMap(std::map<std::string, V>& m, std::size_t limit, DateOf dateOf) {
    std::erase_if(m, [](const auto& e) { return e.first.size() > maxKeyBytes; });
    if (m.size() <= limit) return;
    std::vector<std::pair<TimePoint, std::string>> byDate;
    byDate.reserve(m.size());
    for (const auto& [k, v] : m) byDate.emplace_back(dateOf(v), k);
    std::sort(byDate.begin(), byDate.end());
    for (std::size_t i = 0; i + limit < byDate.size(); ++i) m.erase(byDate[i].second);
}

TimePoint itself(TimePoint t) { return t; }
TimePoint clearDate(const CacheClear& c) { return c.date; }

void boundPlaces(std::vector<GrowthPlace>& places, std::size_t limit) {
    if (places.size() > limit) places.resize(limit); // biggest first: the tail goes
    for (auto& p : places) {
        cut(p.name, maxNameBytes);
        cut(p.location, maxLocationBytes);
    }
}

json encodePlace(const GrowthPlace& p) {
    return json{{"name", p.name}, {"location", p.location}, {"bytes", p.bytes}, {"bucket", GrowthBuckets::raw(p.bucket)}};
}

json encodeGrowth(const GrowthReport& g) {
    json days = json::array(), biggest = json::array();
    for (const auto& d : g.days) {
        json top = json::array();
        for (const auto& p : d.top) top.push_back(encodePlace(p));
        days.push_back(json{{"date", secondsSince1970(d.date)}, {"buckets", d.buckets}, {"top", top}});
    }
    for (const auto& p : g.biggest) biggest.push_back(encodePlace(p));
    return json{{"made", secondsSince1970(g.made)}, {"days", days}, {"biggest", biggest}};
}

GrowthPlace decodePlace(const json& j) {
    GrowthPlace p;
    p.name = text(need(j, "name"));
    p.location = text(need(j, "location"));
    p.bytes = integer(need(j, "bytes"));
    auto bucket = GrowthBuckets::fromRaw(integer(need(j, "bucket")));
    if (!bucket) throw Invalid();
    p.bucket = *bucket;
    return p;
}

// Nothing when one of its dates is bad: a report with a hole in its days is no report.
std::optional<GrowthReport> decodeGrowth(const json& j) {
    GrowthReport g;
    auto made = date(need(j, "made"));
    bool whole = made.has_value();
    for (const auto& d : array(need(j, "days"))) {
        GrowthDay day;
        auto when = date(need(d, "date"));
        whole = whole && when.has_value();
        day.date = when.value_or(TimePoint{});
        const json& buckets = array(need(d, "buckets"));
        if (buckets.size() != day.buckets.size()) throw Invalid();
        for (std::size_t i = 0; i < day.buckets.size(); ++i) day.buckets[i] = integer(buckets[i]);
        for (const auto& p : array(need(d, "top"))) day.top.push_back(decodePlace(p));
        g.days.push_back(std::move(day));
    }
    for (const auto& p : array(need(j, "biggest"))) g.biggest.push_back(decodePlace(p));
    if (!whole) return std::nullopt;
    g.made = *made;
    return g;
}

const json& object(const json& v) {
    if (!v.is_object()) throw Invalid();
    return v;
}

} // namespace

HistoryData bounded(HistoryData d) {
    keepNewest(d.samples, maxSamples);
    keepNewest(d.cleans, maxCleans);
    for (auto& c : d.cleans) cut(c.label, maxLabelBytes);
    boundMap(d.snoozed, maxSnoozed, itself);
    boundMap(d.alerted, maxAlerted, itself);
    if (d.cacheClears) boundMap(*d.cacheClears, maxCacheClears, clearDate);
    if (d.fastRefill) boundMap(*d.fastRefill, maxFastRefill, itself);
    if (d.growth) {
        keepNewest(d.growth->days, maxGrowthDays);
        for (auto& day : d.growth->days) boundPlaces(day.top, maxGrowthTop);
        boundPlaces(d.growth->biggest, maxGrowthBiggest);
    }
    return d;
}

std::string encode(const HistoryData& data) {
    const HistoryData d = bounded(data);
    json samples = json::array(), cleans = json::array();
    for (const auto& s : d.samples)
        samples.push_back(json{{"date", secondsSince1970(s.date)}, {"free", s.free}, {"swap", s.swap}});
    for (const auto& c : d.cleans)
        cleans.push_back(json{{"date", secondsSince1970(c.date)}, {"freed", c.freed}, {"label", c.label}});
    json j{{"samples", samples}, {"cleans", cleans}, {"snoozed", encodeDates(d.snoozed)}, {"alerted", encodeDates(d.alerted)}};
    if (d.growth) j["growth"] = encodeGrowth(*d.growth);
    if (d.restartReminder) j["restartReminder"] = secondsSince1970(*d.restartReminder);
    if (d.cacheClears) {
        json clears = json::object();
        for (const auto& [id, c] : *d.cacheClears) clears[id] = json{{"date", secondsSince1970(c.date)}, {"size", c.size}};
        j["cacheClears"] = clears;
    }
    if (d.fastRefill) j["fastRefill"] = encodeDates(*d.fastRefill);
    return j.dump(-1, ' ', false, json::error_handler_t::replace);
}

std::optional<HistoryData> decode(std::string_view content) {
    if (content.size() > readLimit) return std::nullopt;
    json j = json::parse(content, nullptr, false);
    if (j.is_discarded() || !j.is_object()) return std::nullopt;
    try {
        HistoryData d;
        for (const auto& s : array(need(j, "samples"))) {
            auto when = date(need(s, "date"));
            FreeSample sample{TimePoint{}, integer(need(s, "free")), integer(need(s, "swap"))};
            if (!when) continue;
            sample.date = *when;
            d.samples.push_back(sample);
        }
        for (const auto& c : array(need(j, "cleans"))) {
            auto when = date(need(c, "date"));
            CleanRecord clean{TimePoint{}, integer(need(c, "freed")), text(need(c, "label"))};
            if (!when) continue;
            clean.date = *when;
            d.cleans.push_back(std::move(clean));
        }
        d.snoozed = dates(need(j, "snoozed"));
        d.alerted = dates(need(j, "alerted"));
        if (auto v = maybe(j, "growth")) d.growth = decodeGrowth(*v);
        if (auto v = maybe(j, "restartReminder")) d.restartReminder = date(*v);
        if (auto v = maybe(j, "cacheClears")) {
            std::map<std::string, CacheClear> clears;
            for (const auto& [id, c] : object(*v).items()) {
                auto when = date(need(c, "date"));
                int64_t size = integer(need(c, "size"));
                if (when) clears[id] = CacheClear{*when, size};
            }
            d.cacheClears = std::move(clears);
        }
        if (auto v = maybe(j, "fastRefill")) d.fastRefill = dates(*v);
        return d;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace HistoryFile
