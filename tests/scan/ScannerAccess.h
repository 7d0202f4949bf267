#pragma once
// Reaches the scanner's sources one by one, without measuring, for tests.
#include "scan/Scanner.h"

#include <utility>

struct ScannerTestAccess {
    static std::vector<Candidate> userCaches(Scanner& s) { return s.userCaches(); }
    static std::vector<Candidate> appCaches(Scanner& s) { return s.appCaches(); }
    static std::vector<Candidate> toolCaches(Scanner& s) { return s.toolCaches(); }
    static std::vector<Candidate> developerData(Scanner& s) { return s.developerData(); }
    static std::vector<Candidate> bigItems(Scanner& s) { return s.bigItems(); }
    static std::vector<Candidate> nodeVersions(Scanner& s) { return s.nodeVersions(); }
    static std::vector<std::string> findBuildDirs(Scanner& s) { return s.findBuildDirs(); }
    static std::vector<CleanItem> measureAll(Scanner& s, const std::vector<Candidate>& c) { return s.measureAll(c); }
    // The walk, then the grouping into projects, as the scan runs them.
    static std::vector<Candidate> projects(Scanner& s) {
        s.buildDirs = s.findBuildDirs();
        return s.projects();
    }
    static std::pair<CacheKind, std::optional<TimePoint>> kind(const Scanner& s, const std::vector<std::string>& ids,
                                                               const std::string& folder) {
        auto k = s.kind(ids, folder);
        return {k.kind, k.date};
    }
};

// The candidate of this id, or null.
inline const Candidate* withId(const std::vector<Candidate>& list, const std::string& id) {
    for (const auto& c : list)
        if (c.id == id) return &c;
    return nullptr;
}
