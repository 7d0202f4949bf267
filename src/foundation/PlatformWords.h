#pragma once
// The few words that name the desktop itself, said the way this platform says them: the
// computer rather than a brand of it, the system, the file manager, the panel, the system
// menu. Every sentence of the program's own passes through here before a name or a figure is
// put into it, so that an app called "Mac Mouse Fix" keeps its name.
#include <string>
#include <string_view>

namespace PlatformWords {

// A sentence: "Restart your Mac" reads "Restart your computer", "macOS has written" reads
// "The system has written". Only whole words are swapped; a swap that opens a sentence is
// capitalised.
[[nodiscard]] std::string say(std::string_view text);

// A title or a label: as `say`, except that the system is named "System".
[[nodiscard]] std::string title(std::string_view text);

} // namespace PlatformWords
