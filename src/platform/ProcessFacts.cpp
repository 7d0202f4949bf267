#include "platform/ProcessFacts.h"

#include "foundation/FS.h"

namespace {

class SystemFacts final : public ProcessFacts {
public:
    std::vector<ProcInfo> processes() const override { return FS::processes(); }
    std::vector<std::string> arguments(int32_t pid) const override { return FS::arguments(pid); }
    std::optional<std::vector<std::string>> openPaths(int32_t pid) const override { return FS::openPaths(pid); }
};

} // namespace

const ProcessFacts& ProcessFacts::system() {
    static const SystemFacts facts;
    return facts;
}
