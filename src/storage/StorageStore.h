#pragma once
// The last complete storage report, kept on disk so the storage map has something to show at
// once. One JSON object; dates as seconds since 1970, enumerations as their raw values.
#include "storage/StorageReport.h"

#include <optional>
#include <string>

namespace StorageStore {

// Support::dir() + "/storage.json".
[[nodiscard]] std::string url();
[[nodiscard]] std::string url(const std::string& folder);

// Reads and decodes the file; any failure (no file, bad JSON, a required key missing) gives
// nothing, without a message.
[[nodiscard]] std::optional<StorageReport> load();
[[nodiscard]] std::optional<StorageReport> load(const std::string& folder);

// Writes the report atomically, making the folder first. Nothing happens while screens are
// rendered; a failure is dropped.
void save(const StorageReport& report);
void save(const StorageReport& report, const std::string& folder);

// The file's text and back; decode gives nothing for anything but a whole, valid report. A
// date outside the years 1970 to 9999 is a bad field: left absent where it may be, and the
// whole file refused for `made`.
[[nodiscard]] std::string encode(const StorageReport& report);
[[nodiscard]] std::optional<StorageReport> decode(const std::string& text);

} // namespace StorageStore
