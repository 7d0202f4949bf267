// The --storage report.
#include "foundation/FS.h"
#include "foundation/Tools.h"
#include "platform/Layout.h"
#include "platform/SwapAreas.h"
#include "storage/StorageScan.h"
#include "storage/StorageText.h"

#include <chrono>
#include <cstdio>

namespace {

// Swap in use on disk, as the probe's system reading gives it: the disk-backed areas of
// /proc/swaps less what zswap keeps in memory. The one place to point at the probe.
int64_t swapInUse() {
    auto meminfo = FS::readText("/proc/meminfo", 1 << 20);
    return SwapAreas::usedOnDisk(SwapAreas::read(), meminfo ? SwapAreas::zswapped(*meminfo) : 0);
}

} // namespace

void Tools::storageReport() {
    auto start = std::chrono::steady_clock::now();
    int64_t swap = swapInUse();
    StorageScan scan(ScanToken::make());
    StorageReport report = scan.run();
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const Layout& layout = Layout::host();
    std::string text = StorageText::text(report, swap, layout.platform, layout.home, seconds);
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}
