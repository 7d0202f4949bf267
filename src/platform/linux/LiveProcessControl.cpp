// Signals by pidfd (pidfd_open, then pidfd_send_signal): the descriptor names one process for
// good, so a start time read after opening it vouches for the process the signal will reach.
#include "platform/ProcessControl.h"
#include "platform/Probe.h"

#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

namespace {

class PidfdHold final : public ProcessControl::Hold {
public:
    explicit PidfdHold(int fd) : fd(fd) {}
    ~PidfdHold() override { close(fd); }
    PidfdHold(const PidfdHold&) = delete;
    PidfdHold& operator=(const PidfdHold&) = delete;
    bool signal(int number) override { return syscall(SYS_pidfd_send_signal, fd, number, nullptr, 0) == 0; }

private:
    int fd;
};

// Kernels before 5.3 have no pidfds; there the start time read just before the signal is the
// only guard, as on systems that never had them.
class PidHold final : public ProcessControl::Hold {
public:
    explicit PidHold(int32_t pid) : pid(pid) {}
    bool signal(int number) override { return kill(pid, number) == 0; }

private:
    int32_t pid;
};

class LiveProcessControl final : public ProcessControl {
public:
    std::optional<TimePoint> startTime(int32_t pid) const override { return Probe::startTime(pid); }

    std::unique_ptr<Hold> hold(int32_t pid) const override {
        if (pid <= 0) return nullptr;
        long fd = syscall(SYS_pidfd_open, pid, 0);
        if (fd >= 0) return std::make_unique<PidfdHold>(static_cast<int>(fd));
        if (errno == ESRCH) return nullptr;
        if (errno == ENOSYS) return std::make_unique<PidHold>(pid);
        return nullptr;
    }

    std::string path(int32_t pid) const override { return Probe::path(pid); }
};

} // namespace

const ProcessControl& ProcessControl::live() {
    static const LiveProcessControl control;
    return control;
}
