#pragma once
// The hidden command-line jobs of the one executable: reports and self-checks that run the
// same code as the window and print the same figures.
#include "foundation/Rendering.h"

#include <string>
#include <vector>

namespace Tools {

// The job an argument list asks for: the first option of the table that matches decides.
struct Job {
    enum class Kind { none, scan, speed, projects, growth, storage, render, makeIcon, dmgBackground, selftest, testActions };
    Kind kind = Kind::none;
    std::string value;  // the folder of render, makeIcon, dmgBackground and selftest
    bool growth = true; // render only: false when --no-growth is present anywhere
    friend bool operator==(const Job&, const Job&) = default;
};
[[nodiscard]] Job choose(const std::vector<std::string>& arguments);

// Runs at most one job. True when a job ran and the process is to end with status 0; false
// when the arguments hold no job. The two self-checks end the process themselves.
[[nodiscard]] bool handle(const std::vector<std::string>& arguments);

void scanReport();
void speedReport();
void projectsReport();
void growthReport();
void storageReport();
void render(const std::string& folder, bool growth);
void makeIcon(const std::string& folder);
void drawDiskImageBackground(const std::string& folder);
[[nodiscard]] bool selftest(const std::string& folder);

} // namespace Tools
