#pragma once
// The process facts a scan reads, behind an interface so that tests can hand in their own.
#include "foundation/ProcInfo.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class ProcessFacts {
public:
    virtual ~ProcessFacts() = default;
    [[nodiscard]] virtual std::vector<ProcInfo> processes() const = 0;
    [[nodiscard]] virtual std::vector<std::string> arguments(int32_t pid) const = 0;
    // Absent when the open files cannot be read.
    [[nodiscard]] virtual std::optional<std::vector<std::string>> openPaths(int32_t pid) const = 0;

    // The live machine, through FS.
    [[nodiscard]] static const ProcessFacts& system();
};
