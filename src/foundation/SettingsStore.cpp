#include "foundation/SettingsStore.h"

#include "foundation/AtomicFile.h"
#include "foundation/FS.h"

SettingsStore::SettingsStore(std::string file) : path(std::move(file)) {
    if (auto text = FS::readText(path, 16 << 20)) {
        auto parsed = nlohmann::json::parse(*text, nullptr, /*allow_exceptions=*/false);
        if (parsed.is_object()) values = std::move(parsed);
    }
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
    return AtomicFile::write(path, values.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n");
}
