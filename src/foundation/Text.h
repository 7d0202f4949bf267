#pragma once
// Small text helpers shared by every subsystem: UTF-8 repair, column fitting, trimming.
#include <string>
#include <string_view>
#include <vector>

namespace Text {

// Replaces every invalid UTF-8 sequence with U+FFFD, so that bytes from the file system or a
// child process can reach a person or a JSON file.
[[nodiscard]] std::string repairUtf8(std::string_view bytes);
[[nodiscard]] bool isValidUtf8(std::string_view bytes);

// A name as a report prints it to a terminal: invalid UTF-8 becomes U+FFFD, and every
// character that would move the cursor, change colours or turn the text around is shown as a
// visible escape instead: C0 controls and DEL ("\n", "\r", "\t", "\e", else "\x7f"), C1
// controls ("\u009b"), and the bidirectional overrides, isolates and line separators
// ("\u202e"). Backslashes stand as they are, so the result passes through again unchanged.
[[nodiscard]] std::string visible(std::string_view bytes);

// Number of user-perceived characters (extended grapheme clusters).
[[nodiscard]] std::size_t graphemeCount(std::string_view utf8);

// Fits a text to exactly `width` characters: shorter ones are padded with blanks on the right,
// longer ones cut to width-1 characters followed by "…". The text is made `visible` first, so
// the width counts what the terminal shows.
[[nodiscard]] std::string fit(std::string_view utf8, std::size_t width);

// Trims blanks, tabs, carriage returns and line feeds from both ends.
[[nodiscard]] std::string trim(std::string_view s);
[[nodiscard]] std::string lower(std::string_view s);
// The text with its first letter in upper case (ASCII letters only).
[[nodiscard]] std::string upperFirst(std::string s);
[[nodiscard]] std::vector<std::string> split(std::string_view s, char sep, bool keepEmpty = false);
[[nodiscard]] std::string join(const std::vector<std::string>& parts, std::string_view sep);
[[nodiscard]] std::string replaceAll(std::string s, std::string_view from, std::string_view to);
[[nodiscard]] bool contains(std::string_view s, std::string_view part);

// printf into a std::string.
[[nodiscard]] std::string format(const char* fmt, ...) __attribute__((format(printf, 1, 2)));

} // namespace Text
