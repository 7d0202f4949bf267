#include "foundation/SettingsStore.h"

#include "foundation/AtomicFile.h"
#include "foundation/FS.h"

SettingsStore::SettingsStore(std::string file) : path(std::move(file)) {
    if (auto text = FS::readText(path, readLimit + 1)) values = decode(*text);
}

nlohmann::json SettingsStore::decode(std::string_view text) {
    if (text.size() > readLimit) return nlohmann::json::object();
    // Copying and writing a value recurse once per level: a file nested a million deep would
    // end the program at the next save, so such a file reads as empty instead.
    bool tooDeep = false;
    auto parsed = nlohmann::json::parse(
        text,
        [&](int depth, nlohmann::json::parse_event_t, nlohmann::json&) {
            if (depth > maxDepth) tooDeep = true;
            return true;
        },
        /*allow_exceptions=*/false);
    if (tooDeep || !parsed.is_object()) return nlohmann::json::object();
    return parsed;
}

std::string SettingsStore::encode(const nlohmann::json& v) {
    return v.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

std::optional<nlohmann::json> SettingsStore::value(const std::string& key) const {
    std::lock_guard guard(lock);
    auto it = values.find(key);
    if (it == values.end()) return std::nullopt;
    return *it;
}

bool SettingsStore::boolValue(const std::string& key) const {
    auto v = value(key);
    return v && v->is_boolean() && v->get<bool>();
}

std::optional<double> SettingsStore::doubleValue(const std::string& key) const {
    auto v = value(key);
    if (!v || !v->is_number()) return std::nullopt;
    return v->get<double>();
}

bool SettingsStore::set(const std::string& key, nlohmann::json v) {
    std::lock_guard guard(lock);
    values[key] = std::move(v);
    return save();
}

bool SettingsStore::remove(const std::string& key) {
    std::lock_guard guard(lock);
    values.erase(key);
    return save();
}

bool SettingsStore::save() const {
    return AtomicFile::write(path, encode(values));
}
