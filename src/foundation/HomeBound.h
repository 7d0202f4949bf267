#pragma once
// The one rule of every place the program measures as the home folder's, offers to clear or
// hands to the remover: it lies strictly below the home folder and is reached from it without
// passing through, or ending on, a symbolic link. Users link ~/.cache or ~/Downloads to other
// disks and XDG variables can name any folder; what lies there is not the home's.
// Every site that gathers places asks `admit`, so that a new source cannot forget the rule.
#include <string>
#include <string_view>

namespace HomeBound {

enum class Verdict {
    inside,  // below the home folder, no link on the way
    missing, // not there, or not reachable
    outside, // elsewhere, or written with ".", ".." or empty components
    link,    // the path or a folder on its way is a symbolic link
};

[[nodiscard]] Verdict check(std::string_view path, std::string_view home);
// The same, with a line in the log for a place outside the home or behind a link.
[[nodiscard]] Verdict noted(std::string_view path, std::string_view home);
// True only for `inside`. A place outside the home or behind a link is left out with a line
// in the log; a missing one silently.
[[nodiscard]] bool admit(std::string_view path, std::string_view home);

} // namespace HomeBound
