#pragma once
// A small persistent key-value store: one JSON object in one file, rewritten atomically on
// each change. A file that cannot be decoded reads as empty and stays until the next write.
#include <nlohmann/json.hpp>

#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

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

    // What the reader accepts; a larger file reads as empty.
    static constexpr std::size_t readLimit = std::size_t{16} << 20;
    static constexpr int maxDepth = 64;
    // The file's text as the store reads it: its object, or an empty one when the text is no
    // JSON object, is longer than readLimit or nests deeper than maxDepth.
    [[nodiscard]] static nlohmann::json decode(std::string_view text);
    // The text the store writes: indented, invalid UTF-8 as U+FFFD.
    [[nodiscard]] static std::string encode(const nlohmann::json& values);

private:
    bool save() const;
    std::string path;
    mutable std::mutex lock;
    nlohmann::json values = nlohmann::json::object();
};
