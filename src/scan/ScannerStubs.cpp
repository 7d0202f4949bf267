// Sources whose rules are still to come: each gives nothing for now.
#include "scan/Scanner.h"

std::vector<Candidate> Scanner::userCaches() { return {}; }
std::vector<Candidate> Scanner::appCaches() { return {}; }
std::vector<Candidate> Scanner::toolCaches() { return {}; }
std::vector<Candidate> Scanner::developerData() { return {}; }
std::vector<std::string> Scanner::findBuildDirs() { return {}; }
std::vector<Candidate> Scanner::projects() { return {}; }
std::vector<Candidate> Scanner::bigItems() { return {}; }
std::vector<Candidate> Scanner::nodeVersions() { return {}; }
std::vector<Candidate> Scanner::mergeSameApp(std::vector<Candidate> candidates) { return candidates; }
