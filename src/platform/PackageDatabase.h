#pragma once
// The distribution's package database as dpkg keeps it: installed packages with their
// installed sizes, and the files each package installed. Read from files, never by running
// the package manager.
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace PackageDatabase {

// Installed packages of a dpkg status text, by name, with Installed-Size in bytes. A
// multi-arch package is also listed as "name:arch", the name of its file list.
[[nodiscard]] std::map<std::string, int64_t> parseStatus(std::string_view text);
[[nodiscard]] std::map<std::string, int64_t> readStatus(const std::string& statusFile);
// The sum of installed sizes over distinct installed packages.
[[nodiscard]] int64_t totalSize(std::string_view statusText);

// The package that installed each of `paths`, by the file lists in `infoDir` (<pkg>.list,
// <pkg>:<arch>.list). Paths no list names are absent from the result.
[[nodiscard]] std::map<std::string, std::string> owners(const std::string& infoDir, const std::set<std::string, std::less<>>& paths);

} // namespace PackageDatabase
