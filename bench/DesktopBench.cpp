// What the program costs on a desktop: the time from its start to the window's first frame,
// then its processor time and memory while it waits in the tray with the window closed, and
// while the window stays open on the Speed tab. The desktop is the tests' own (Xvfb, a private
// session bus, a tray watcher and a notification recorder), so no other program shares it.
// Usage: sorrelin_desktop_bench [IDLE_SECONDS=600] [OPEN_SECONDS=120] [STARTS=3]
#include "desktop/DesktopSession.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

double wallNow() {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

// The log line's own time stamp (seconds since 1970, as the program writes it), or 0.
double loggedAt(const std::string& log, const std::string& what) {
    const auto at = log.find(what);
    if (at == std::string::npos) return 0;
    const auto lineStart = log.rfind('\n', at);
    return std::atof(log.c_str() + (lineStart == std::string::npos ? 0 : lineStart + 1));
}

// Processor seconds (user and system) the process has used so far.
double cpuSeconds(pid_t pid) {
    std::ifstream in("/proc/" + std::to_string(pid) + "/stat");
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const auto close = text.rfind(')');
    if (close == std::string::npos) return 0;
    std::istringstream fields(text.substr(close + 2));
    std::string f;
    double ticks = 0;
    // After the name: state is field 3; utime and stime are fields 14 and 15.
    for (int i = 3; i <= 15 && fields >> f; ++i)
        if (i >= 14) ticks += std::atof(f.c_str());
    return ticks / double(sysconf(_SC_CLK_TCK));
}

// Resident memory in MiB.
double residentMiB(pid_t pid) {
    std::ifstream in("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(in, line);)
        if (line.rfind("VmRSS:", 0) == 0) return std::atof(line.c_str() + 6) / 1024.0;
    return 0;
}

struct Period {
    double cpuPercent = 0;
    double peakMiB = 0;
    double endMiB = 0;
};

// Watches the program for `seconds`, a reading a second.
Period watch(pid_t pid, double seconds) {
    Period p;
    const double cpu0 = cpuSeconds(pid);
    const double start = wallNow();
    double lastSample = 0;
    (void)waitFor([&] {
        const double now = wallNow();
        if (now - lastSample >= 1.0) {
            lastSample = now;
            p.endMiB = residentMiB(pid);
            p.peakMiB = std::max(p.peakMiB, p.endMiB);
        }
        return now - start >= seconds;
    }, seconds + 30);
    p.cpuPercent = 100.0 * (cpuSeconds(pid) - cpu0) / (wallNow() - start);
    return p;
}

int fail(const char* what, const DesktopSession& s) {
    std::fprintf(stderr, "%s\n%s\n", what, s.log().c_str());
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const double idleSeconds = argc > 1 ? std::atof(argv[1]) : 600;
    const double openSeconds = argc > 2 ? std::atof(argv[2]) : 120;
    const int starts = argc > 3 ? std::atoi(argv[3]) : 3;
    const std::string title = "Sorrelin";

    std::vector<double> firstFrames;
    for (int i = 0; i < starts; ++i) {
        DesktopSession s;
        if (!s.missing().empty()) {
            std::fprintf(stderr, "no desktop: %s\n", s.missing().c_str());
            return 77;
        }
        if (!s.serveTray() || !s.serveNotifications()) return fail("the bus refused the desktop's services", s);
        const double t0 = wallNow();
        auto program = s.start();
        if (!waitFor([&] { return loggedAt(s.log(), "window first frame") > 0; }, 60)) return fail("no first frame", s);
        firstFrames.push_back(loggedAt(s.log(), "window first frame") - t0);
        (void)s.activateAction("quit");
        (void)program->waitExit(20);
    }
    std::sort(firstFrames.begin(), firstFrames.end());
    std::printf("start to first frame: median %.2f s, best %.2f s, worst %.2f s (%d starts)\n",
                firstFrames[firstFrames.size() / 2], firstFrames.front(), firstFrames.back(), starts);

    DesktopSession s;
    if (!s.serveTray() || !s.serveNotifications()) return fail("the bus refused the desktop's services", s);
    auto program = s.start();
    if (!waitFor([&] { return loggedAt(s.log(), "scan done") > 0 && loggedAt(s.log(), "window first frame") > 0; }, 120))
        return fail("no window or no scan", s);
    const double openMiB = residentMiB(program->pid);
    if (!waitFor([&] {
            s.closeWindows(title);
            return waitFor([&] { return s.visibleWindows(title) == 0; }, 3);
        }, 30))
        return fail("the window did not close", s);
    // The closing itself is not waiting in the tray: the figures start once the program has
    // let the window go and a second has passed.
    const double closingMiB = residentMiB(program->pid);
    if (!waitFor([&] { return loggedAt(s.log(), "window closed") > 0; }, 30)) return fail("the window never said it closed", s);
    (void)waitFor([] { return false; }, 1);
    const Period idle = watch(program->pid, idleSeconds);
    std::printf("in the tray, window closed, %.0f s: processor %.3f %%, resident memory peak %.1f MiB, at the end %.1f MiB "
                "(%.1f MiB with the window open before, %.1f MiB as it closed)\n",
                idleSeconds, idle.cpuPercent, idle.peakMiB, idle.endMiB, openMiB, closingMiB);

    if (!s.activateAction("show-tab", {QStringLiteral("speed")}).isEmpty() ||
        !waitFor([&] { return s.windowShown() == std::optional<bool>(true); }, 30))
        return fail("the window did not open on the Speed tab", s);
    const Period open = watch(program->pid, openSeconds);
    std::printf("window open on the Speed tab, %.0f s: processor %.3f %%, resident memory peak %.1f MiB\n", openSeconds,
                open.cpuPercent, open.peakMiB);
    (void)s.activateAction("quit");
    (void)program->waitExit(20);
    return 0;
}
