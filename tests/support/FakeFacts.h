#pragma once
// Hand-made process facts for scans in tests.
#include "platform/ProcessFacts.h"

#include <map>

class FakeFacts final : public ProcessFacts {
public:
    std::vector<ProcInfo> procs;
    std::map<int32_t, std::vector<std::string>> args;
    std::map<int32_t, std::optional<std::vector<std::string>>> open;

    std::vector<ProcInfo> processes() const override { return procs; }
    std::vector<std::string> arguments(int32_t pid) const override {
        auto it = args.find(pid);
        return it == args.end() ? std::vector<std::string>{} : it->second;
    }
    std::optional<std::vector<std::string>> openPaths(int32_t pid) const override {
        auto it = open.find(pid);
        return it == open.end() ? std::optional<std::vector<std::string>>{std::vector<std::string>{}} : it->second;
    }
};
