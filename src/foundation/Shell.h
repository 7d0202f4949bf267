#pragma once
// Runs an external program with a deadline and gives back its status and text.
#include <cstdint>
#include <string>
#include <vector>

namespace Shell {

struct Output {
    int32_t status = 0; // exit status; -1 when the program could not be started
    std::string text;   // standard output and error interleaved, UTF-8 repaired
};

// Blocks the calling thread until the program ends or `timeout` seconds pass; then it is
// terminated and what it printed so far is returned with its status.
[[nodiscard]] Output run(const std::string& executable, const std::vector<std::string>& arguments,
                         double timeout = 120);

// The PATH a child gets: the package managers' folders first, then ours.
[[nodiscard]] std::string childPath(const char* current);

} // namespace Shell
