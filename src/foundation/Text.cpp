#include "foundation/Text.h"

#include <unicode/ubrk.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <memory>

namespace Text {

namespace {

// Length of the valid UTF-8 sequence starting at i, or 0 when it is not valid.
std::size_t validSequence(std::string_view s, std::size_t i) {
    auto byte = [&](std::size_t k) { return static_cast<unsigned char>(s[k]); };
    unsigned char c = byte(i);
    if (c < 0x80) return 1;
    std::size_t need;
    unsigned char lo = 0x80, hi = 0xBF;
    if (c >= 0xC2 && c <= 0xDF) need = 1;
    else if (c == 0xE0) { need = 2; lo = 0xA0; }
    else if (c >= 0xE1 && c <= 0xEC) need = 2;
    else if (c == 0xED) { need = 2; hi = 0x9F; }
    else if (c >= 0xEE && c <= 0xEF) need = 2;
    else if (c == 0xF0) { need = 3; lo = 0x90; }
    else if (c >= 0xF1 && c <= 0xF3) need = 3;
    else if (c == 0xF4) { need = 3; hi = 0x8F; }
    else return 0;
    if (i + need >= s.size()) return 0;
    for (std::size_t k = 1; k <= need; ++k) {
        unsigned char b = byte(i + k);
        unsigned char l = (k == 1) ? lo : 0x80, h = (k == 1) ? hi : 0xBF;
        if (b < l || b > h) return 0;
    }
    return need + 1;
}

// The text with each invalid byte as U+FFFD and each valid sequence as `shown` gives it.
template <typename Shown>
std::string repaired(std::string_view s, Shown shown) {
    std::string out;
    out.reserve(s.size());
    std::size_t i = 0;
    while (i < s.size()) {
        std::size_t n = validSequence(s, i);
        if (n == 0) {
            out += "\xEF\xBF\xBD";
            ++i;
        } else {
            shown(out, s.substr(i, n));
            i += n;
        }
    }
    return out;
}

} // namespace

std::string repairUtf8(std::string_view s) {
    return repaired(s, [](std::string& out, std::string_view sequence) { out.append(sequence); });
}

bool isValidUtf8(std::string_view s) {
    std::size_t i = 0;
    while (i < s.size()) {
        std::size_t n = validSequence(s, i);
        if (n == 0) return false;
        i += n;
    }
    return true;
}

namespace {

// A code point that drives the terminal or the direction of the text rather than showing.
bool shownAsEscape(char32_t c) {
    return c < 0x20 || c == 0x7F || (c >= 0x80 && c <= 0x9F) || c == 0x061C || c == 0x200E || c == 0x200F ||
           (c >= 0x2028 && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

// The code point of one valid sequence.
char32_t decode(std::string_view s) {
    auto b = [&](std::size_t k) { return static_cast<char32_t>(static_cast<unsigned char>(s[k])); };
    const std::size_t n = s.size();
    if (n == 1) return b(0);
    if (n == 2) return ((b(0) & 0x1F) << 6) | (b(1) & 0x3F);
    if (n == 3) return ((b(0) & 0x0F) << 12) | ((b(1) & 0x3F) << 6) | (b(2) & 0x3F);
    return ((b(0) & 0x07) << 18) | ((b(1) & 0x3F) << 12) | ((b(2) & 0x3F) << 6) | (b(3) & 0x3F);
}

} // namespace

std::string visible(std::string_view s) {
    return repaired(s, [](std::string& out, std::string_view sequence) {
        char32_t c = decode(sequence);
        if (!shownAsEscape(c)) out.append(sequence);
        else if (c == '\n') out += "\\n";
        else if (c == '\r') out += "\\r";
        else if (c == '\t') out += "\\t";
        else if (c == 0x1B) out += "\\e";
        else if (c < 0x80) out += format("\\x%02x", static_cast<unsigned>(c));
        else out += format("\\u%04x", static_cast<unsigned>(c));
    });
}

namespace {

// Byte offsets of the grapheme boundaries of a valid UTF-8 text, the end included.
std::vector<std::size_t> graphemeBoundaries(std::string_view utf8) {
    std::vector<std::size_t> bounds;
    if (utf8.empty()) return bounds;
    UErrorCode err = U_ZERO_ERROR;
    int32_t len16 = 0;
    u_strFromUTF8(nullptr, 0, &len16, utf8.data(), static_cast<int32_t>(utf8.size()), &err);
    err = U_ZERO_ERROR;
    std::vector<UChar> u16(static_cast<std::size_t>(len16) + 1);
    u_strFromUTF8(u16.data(), len16 + 1, &len16, utf8.data(), static_cast<int32_t>(utf8.size()), &err);
    if (U_FAILURE(err)) {
        // Without ICU's answer every code point counts as a character.
        for (std::size_t i = 0; i < utf8.size(); ++i)
            if ((static_cast<unsigned char>(utf8[i]) & 0xC0) != 0x80) bounds.push_back(i);
        bounds.push_back(utf8.size());
        return bounds;
    }
    // Map UTF-16 offsets back to UTF-8 byte offsets.
    std::vector<std::size_t> byteAt(static_cast<std::size_t>(len16) + 1, utf8.size());
    {
        std::size_t b = 0, u = 0;
        while (b < utf8.size() && u < static_cast<std::size_t>(len16)) {
            byteAt[u] = b;
            unsigned char c = static_cast<unsigned char>(utf8[b]);
            std::size_t n = c < 0x80 ? 1 : c < 0xE0 ? 2 : c < 0xF0 ? 3 : 4;
            if (n == 4) byteAt[u + 1] = b, u += 2; else u += 1;
            b += n;
        }
    }
    UBreakIterator* it = ubrk_open(UBRK_CHARACTER, "", u16.data(), len16, &err);
    if (U_FAILURE(err) || !it) {
        for (int32_t u = 0; u <= len16; ++u) bounds.push_back(byteAt[static_cast<std::size_t>(u)]);
        return bounds;
    }
    for (int32_t p = ubrk_first(it); p != UBRK_DONE; p = ubrk_next(it))
        bounds.push_back(byteAt[static_cast<std::size_t>(p)]);
    ubrk_close(it);
    return bounds;
}

} // namespace

std::size_t graphemeCount(std::string_view utf8) {
    std::string fixed = repairUtf8(utf8);
    auto b = graphemeBoundaries(fixed);
    return b.empty() ? 0 : b.size() - 1;
}

std::string fit(std::string_view raw, std::size_t width) {
    std::string text = visible(raw);
    auto bounds = graphemeBoundaries(text);
    std::size_t count = bounds.empty() ? 0 : bounds.size() - 1;
    if (count <= width) return text + std::string(width - count, ' ');
    if (width == 0) return {};
    return text.substr(0, bounds[width - 1]) + "\xE2\x80\xA6";
}

std::string trim(std::string_view s) {
    auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f'; };
    std::size_t a = 0, b = s.size();
    while (a < b && blank(s[a])) ++a;
    while (b > a && blank(s[b - 1])) --b;
    return std::string(s.substr(a, b - a));
}

std::string lower(std::string_view s) {
    std::string out(s);
    for (char& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

std::string upperFirst(std::string s) {
    if (!s.empty() && s[0] >= 'a' && s[0] <= 'z') s[0] = static_cast<char>(s[0] - 'a' + 'A');
    return s;
}

std::vector<std::string> split(std::string_view s, char sep, bool keepEmpty) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (true) {
        std::size_t at = s.find(sep, start);
        std::string_view piece = s.substr(start, at == std::string_view::npos ? std::string_view::npos : at - start);
        if (keepEmpty || !piece.empty()) parts.emplace_back(piece);
        if (at == std::string_view::npos) break;
        start = at + 1;
    }
    return parts;
}

std::string join(const std::vector<std::string>& parts, std::string_view sep) {
    std::string out;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i) out += sep;
        out += parts[i];
    }
    return out;
}

std::string replaceAll(std::string s, std::string_view from, std::string_view to) {
    if (from.empty()) return s;
    std::size_t at = 0;
    while ((at = s.find(from, at)) != std::string::npos) {
        s.replace(at, from.size(), to);
        at += to.size();
    }
    return s;
}

bool contains(std::string_view s, std::string_view part) { return s.find(part) != std::string_view::npos; }

std::string format(const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    va_list copy;
    va_copy(copy, args);
    int n = std::vsnprintf(nullptr, 0, fmt, copy);
    va_end(copy);
    std::string out;
    if (n > 0) {
        out.resize(static_cast<std::size_t>(n) + 1);
        std::vsnprintf(out.data(), out.size(), fmt, args);
        out.resize(static_cast<std::size_t>(n));
    }
    va_end(args);
    return out;
}

} // namespace Text
