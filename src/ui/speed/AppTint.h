#pragma once
// The colour of an app in bars and rows, a palette name picked by the app's key, so an app keeps
// its colour from one sample to the next and from one section to another.
#include <string>
#include <string_view>

namespace AppTint {

// The same key always gives the same name.
[[nodiscard]] std::string name(std::string_view key);

} // namespace AppTint
