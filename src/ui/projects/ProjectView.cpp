#include "ui/projects/ProjectView.h"

#include "foundation/Fmt.h"
#include "foundation/Text.h"
#include "ui/NumberWords.h"

#include <algorithm>
#include <utility>

namespace ProjectView {

namespace {

std::string joinAnd(const std::vector<std::string>& parts) {
    if (parts.empty()) return {};
    if (parts.size() == 1) return parts.front();
    std::vector<std::string> head(parts.begin(), parts.end() - 1);
    return Text::join(head, ", ") + " and " + parts.back();
}

std::string count(std::size_t n, const char* one, const char* many) {
    return n == 1 ? std::string("1 ") + one : std::to_string(n) + " " + many;
}

double fraction(int64_t part, int64_t whole) {
    if (whole <= 0 || part <= 0) return 0;
    return std::min(1.0, static_cast<double>(part) / static_cast<double>(whole));
}

std::string ports(const std::vector<int>& list) {
    std::vector<std::string> out;
    for (int p : list) out.push_back(":" + std::to_string(p));
    return Text::join(out, ", ");
}

bool anyRunning(const ProjectCard& c) {
    return std::any_of(c.apps.begin(), c.apps.end(), [](const ProjectApp& a) { return a.running; });
}

} // namespace

bool isWide(const ProjectCard& card) { return card.apps.size() >= 3 && !card.isOlder; }

std::vector<std::vector<std::size_t>> rows(const std::vector<ProjectCard>& cards) {
    std::vector<std::vector<std::size_t>> out;
    std::vector<std::size_t> pending;
    for (std::size_t i = 0; i < cards.size(); ++i) {
        if (isWide(cards[i])) {
            if (!pending.empty()) out.push_back(std::exchange(pending, {}));
            out.push_back({i});
            continue;
        }
        pending.push_back(i);
        if (pending.size() == 2) out.push_back(std::exchange(pending, {}));
    }
    if (!pending.empty()) out.push_back(pending);
    return out;
}

std::string status(const ProjectCard& c, TimePoint now) {
    if (c.running) {
        std::vector<std::string> parts;
        if (c.claude == 1) parts.push_back("a Claude session");
        else if (c.claude > 1) parts.push_back(NumberWords::number(c.claude) + " Claude sessions");
        if (c.ports.size() == 1) parts.push_back("a dev server");
        else if (c.ports.size() > 1) parts.push_back(std::to_string(c.ports.size()) + " dev servers");
        for (const auto& e : c.editors) parts.push_back(e);
        if (parts.empty()) return "Something is running in this folder, so its build folders stay.";
        const std::size_t things = static_cast<std::size_t>(std::max(0, c.claude)) + c.ports.size() + c.editors.size();
        return Text::upperFirst(joinAnd(parts)) + (things == 1 ? " is working here." : " are working here.");
    }
    if (!c.leftovers.empty()) {
        if (c.leftovers.size() == 1) return "A process is still running after the session that started it ended.";
        return std::to_string(c.leftovers.size()) + " processes are still running after the session that started them ended.";
    }
    if (c.lastChange) return "Nothing is running. Last changed " + Fmt::ago(*c.lastChange, now) + ".";
    return "Nothing is running.";
}

std::vector<Chip> chips(const ProjectCard& c, TimePoint now) {
    std::vector<Chip> out;
    if (c.claude > 0) out.push_back({c.claude == 1 ? "Claude" : std::to_string(c.claude) + " Claude", "sparkle", false});
    if (c.mcp > 0) out.push_back({count(static_cast<std::size_t>(c.mcp), "MCP server", "MCP servers"), "powerplug", false});
    if (!c.ports.empty()) out.push_back({(c.ports.size() == 1 ? "Dev server " : "Dev servers ") + ports(c.ports), "", false});
    for (const auto& e : c.editors) out.push_back({e, "terminal", false});
    if (!c.leftovers.empty() && c.lastChange) out.push_back({Fmt::age(*c.lastChange, now) + " old", "custom.ghost", false});
    if (!c.running && c.leftovers.empty()) out.push_back({"Nothing running", "clock", false});
    return out;
}

Card card(const ProjectCard& c, int64_t maxMemory, int64_t maxBuild, bool armed, bool freed, TimePoint now) {
    Card v;
    v.id = c.id;
    v.name = c.name;
    v.path = c.path;
    v.wide = isWide(c);
    if (c.running) v.tag = "Running";
    else if (c.leftovers.empty()) {
        v.tag = "Idle";
        v.tagSymbol = "clock";
    }
    v.status = status(c, now);
    if (!c.leftovers.empty()) v.leftoverTag = count(c.leftovers.size(), "leftover", "leftovers");
    v.chips = chips(c, now);
    if (c.isOlder) v.olderTip = "Untouched for a month or more";
    v.memory = Fmt::bytes(c.memory);
    v.memoryFraction = fraction(c.memory, maxMemory);
    // Freed build folders are gone; their sizes wait for the next refresh to leave the list.
    v.freed = freed;
    v.build = freed ? "Freed" : Fmt::bytes(c.build);
    v.buildFraction = freed ? 0 : fraction(c.build, maxBuild);
    for (const auto& a : c.apps) v.apps.push_back({a.name, Fmt::bytes(a.build), a.running});

    if (!c.leftovers.empty()) {
        v.stopLabel = c.leftovers.size() == 1 ? "Stop leftover" : "Stop " + std::to_string(c.leftovers.size()) + " leftovers";
        v.stopTip = "The session that started them is gone, so nothing reads their output.";
    }
    if (c.idleBuild >= 1 && !freed) {
        const bool group = !c.apps.empty();
        const bool someRun = group && anyRunning(c);
        v.freeLabel = (someRun ? "Free idle apps, " : "Free ") + Fmt::bytes(c.idleBuild);
        const std::string base = "Deletes node_modules and build output. The next install and build bring them back.";
        std::vector<std::string> idle;
        for (const auto& a : c.apps)
            if (!a.running && a.build > 0) idle.push_back(a.name);
        if (group && !idle.empty()) v.freeTip = "Nothing runs in " + Text::join(idle, ", ") + ". " + base;
        else if (c.recentlyChanged && c.idleItemIDs.size() == 1) v.freeTip = "You changed this recently, so think twice. " + base;
        else v.freeTip = base;
        v.armed = armed;
    }
    v.locked = c.idleBuild < 1 && c.running && c.build >= 1;
    return v;
}

std::vector<Chip> summary(const std::vector<ProjectCard>& cards, bool scanned) {
    std::size_t running = 0, leftovers = 0;
    int64_t memory = 0, build = 0;
    for (const auto& c : cards) {
        running += c.running ? 1 : 0;
        leftovers += c.leftovers.size();
        memory += c.memory;
        build += c.build;
    }
    std::vector<Chip> out;
    out.push_back({std::to_string(running) + " running", "", running > 0});
    if (leftovers > 0) out.push_back({count(leftovers, "leftover", "leftovers"), "custom.ghost", false});
    out.push_back({Fmt::bytes(memory) + " memory", "memorychip", false});
    out.push_back({scanned ? Fmt::bytes(build) + " build folders" : "Measuring build folders", "shippingbox", false});
    return out;
}

Insight insight(const SharedPackages& s, const std::string& path) {
    Insight i;
    i.headline = NumberWords::number(s.apps) + " " + s.group + " apps carry the same " + std::to_string(s.packages) + " packages";
    i.text = "One shared workspace would keep a single copy instead of " + Text::lower(NumberWords::number(s.apps)) + ".";
    i.today = Fmt::bytes(s.today);
    i.shared = Fmt::bytes(s.shared);
    i.sharedFraction = fraction(s.shared, s.today);
    i.steps = "List the " + std::to_string(s.apps) + " apps in one workspace file at " + path +
              "/package.json. npm, pnpm and bun all support it. Shared packages then install once in " + path +
              "/node_modules and each app keeps only its own.";
    return i;
}

} // namespace ProjectView
