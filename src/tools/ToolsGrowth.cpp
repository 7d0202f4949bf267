// The --growth report.
#include "foundation/Fmt.h"
#include "foundation/Text.h"
#include "tools/Tools.h"
#include "history/Growth.h"
#include "history/GrowthText.h"
#include "history/History.h"

#include <chrono>
#include <cstdio>
#include <unistd.h>

void Tools::growthReport() {
    auto start = std::chrono::steady_clock::now();
    // Folders seen so far, for a person watching a terminal; nothing when output is captured.
    const bool watched = isatty(STDERR_FILENO) != 0;
    GrowthReport report = Growth::scan(Clock::now(), [watched](int folders) {
        if (!watched) return;
        std::fprintf(stderr, "\r%d folders", folders);
        std::fflush(stderr);
    });
    if (watched) std::fprintf(stderr, "\r");
    History::shared().setGrowth(report);
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::string text = GrowthText::text(report, seconds);
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}
