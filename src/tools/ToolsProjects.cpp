// The --projects report: the cards of the Projects view as text, one line each, and what the
// apps of a workspace would save by sharing their packages.
#include "foundation/Fmt.h"
#include "foundation/ScanToken.h"
#include "foundation/Text.h"
#include "tools/Tools.h"
#include "monitor/Monitor.h"
#include "projects/Projects.h"
#include "scan/Scanner.h"

#include <cstdio>
#include <memory>

namespace {

constexpr std::size_t nameWidth = 30;

void line(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
}

} // namespace

void Tools::projectsReport() {
    Scanner scanner(Scanner::runningApps(), std::make_shared<ScanToken>());
    const auto items = scanner.run();
    Monitor monitor;
    monitor.sampleForTools();
    const Snapshot snapshot = monitor.latest() ? *monitor.latest() : Snapshot{};
    const TimePoint now = Clock::now();
    const auto cards = Projects::build(items, snapshot, monitor.leftovers, now);

    for (const ProjectCard& card : cards) {
        std::string text = Text::fit(card.name, nameWidth) + (card.running ? " running" : " idle   ");
        text += " mem " + Fmt::bytes(card.memory);
        text += " build " + Fmt::bytes(card.build);
        text += " idle " + Fmt::bytes(card.idleBuild);
        text += Text::format(" claude %d mcp %d ports %zu editors %zu", card.claude, card.mcp, card.ports.size(),
                             card.editors.size());
        if (card.lastChange) text += " changed " + Fmt::day(*card.lastChange, now);
        if (!card.leftovers.empty())
            text += Text::format(" %zu %s", card.leftovers.size(), card.leftovers.size() == 1 ? "leftover" : "leftovers");
        line(text);
    }

    line("\nShared:");
    for (const ProjectCard& card : cards) {
        if (card.apps.empty() || card.isOlder) continue;
        if (auto s = Projects::sharedPackages(card))
            line(Text::format("%d apps carry the same %d packages: today %s, one copy %s", s->apps, s->packages,
                              Fmt::bytes(s->today).c_str(), Fmt::bytes(s->shared).c_str()));
    }
    std::fflush(stdout);
}
