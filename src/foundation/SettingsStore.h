#pragma once
// A small persistent key-value store: one JSON object in one file, rewritten atomically on
// each change. A file that cannot be decoded reads as empty and stays until the next write.
#include <nlohmann/json.hpp>

#include <mutex>
#include <optional>
#include <string>

class SettingsStore {
public:
    explicit SettingsStore(std::string file);

    [[nodiscard]] const std::string& file() const { return path; }
    [[nodiscard]] std::optional<nlohmann::json> value(const std::string& key) const;
    [[nodiscard]] bool boolValue(const std::string& key) const;
    [[nodiscard]] std::optional<double> doubleValue(const std::string& key) const;
    // False when the file could not be written; the value stays set in memory.
    bool set(const std::string& key, nlohmann::json value);
    bool remove(const std::string& key);

private:
    bool save() const;
    std::string path;
    mutable std::mutex lock;
    nlohmann::json values = nlohmann::json::object();
};
