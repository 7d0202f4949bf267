#include "tools/Tools.h"

#include "advice/ActionTests.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>

namespace Tools {

Job choose(const std::vector<std::string>& arguments) {
    auto present = [&](std::string_view flag) {
        return std::find(arguments.begin(), arguments.end(), flag) != arguments.end();
    };
    // The element right behind the first occurrence of the flag, whatever it is.
    auto valueAfter = [&](std::string_view flag) -> std::optional<std::string> {
        auto it = std::find(arguments.begin(), arguments.end(), flag);
        if (it == arguments.end() || std::next(it) == arguments.end()) return std::nullopt;
        return *std::next(it);
    };
    using K = Job::Kind;
    if (present("--scan")) return {K::scan, {}, true};
    if (present("--speed")) return {K::speed, {}, true};
    if (present("--projects")) return {K::projects, {}, true};
    if (present("--growth")) return {K::growth, {}, true};
    if (present("--storage")) return {K::storage, {}, true};
    if (auto v = valueAfter("--render")) return {K::render, *v, !present("--no-growth")};
    if (auto v = valueAfter("--make-icon")) return {K::makeIcon, *v, true};
    if (auto v = valueAfter("--dmg-background")) return {K::dmgBackground, *v, true};
    if (auto v = valueAfter("--selftest")) return {K::selftest, *v, true};
    if (present("--test-actions")) return {K::testActions, {}, true};
    return {};
}

bool handle(const std::vector<std::string>& arguments) {
    auto finish = [](bool passed) {
        std::fflush(stdout);
        std::exit(passed ? 0 : 1);
    };
    Job job = choose(arguments);
    using K = Job::Kind;
    switch (job.kind) {
    case K::none: return false;
    case K::scan: scanReport(); break;
    case K::speed: speedReport(); break;
    case K::projects: projectsReport(); break;
    case K::growth: growthReport(); break;
    case K::storage: storageReport(); break;
    case K::render: render(job.value, job.growth); break;
    case K::makeIcon: makeIcon(job.value); break;
    case K::dmgBackground: drawDiskImageBackground(job.value); break;
    case K::selftest: finish(selftest(job.value)); break;
    case K::testActions: finish(ActionTests::run()); break;
    }
    std::fflush(stdout);
    return true;
}

} // namespace Tools
