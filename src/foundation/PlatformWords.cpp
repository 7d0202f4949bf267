#include "foundation/PlatformWords.h"

#include <array>
#include <cctype>

namespace PlatformWords {

namespace {

struct Swap {
    std::string_view from;
    std::string_view to;
};

// Longer phrases first, so that "Apple menu" is not read as a word "Apple" and so on.
constexpr std::array<Swap, 5> swaps{{{"Apple menu", "system menu"},
                                     {"macOS", "the system"},
                                     {"Finder", "Files"},
                                     {"Dock", "panel"},
                                     {"Mac", "computer"}}};

bool wordChar(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }

// True at the start of the text or of a sentence within it.
bool opensSentence(std::string_view text, std::size_t at) {
    std::size_t i = at;
    while (i > 0 && text[i - 1] == ' ') --i;
    if (i == 0) return true;
    char c = text[i - 1];
    return i < at && (c == '.' || c == '!' || c == '?' || c == '\n');
}

std::string swapWords(std::string_view text, bool inTitle) {
    std::string out;
    out.reserve(text.size() + 16);
    std::size_t i = 0;
    while (i < text.size()) {
        bool swapped = false;
        if (i == 0 || !wordChar(text[i - 1])) {
            for (const Swap& s : swaps) {
                if (text.substr(i, s.from.size()) != s.from) continue;
                std::size_t end = i + s.from.size();
                if (end < text.size() && wordChar(text[end])) continue;
                std::string to(inTitle && s.from == "macOS" ? std::string_view("System") : s.to);
                if (opensSentence(text, i)) to[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(to[0])));
                out += to;
                i = end;
                swapped = true;
                break;
            }
        }
        if (!swapped) out += text[i++];
    }
    return out;
}

} // namespace

std::string say(std::string_view text) { return swapWords(text, false); }

std::string title(std::string_view text) { return swapWords(text, true); }

} // namespace PlatformWords
