// The --storage report.
#include "tools/Tools.h"
#include "platform/Layout.h"
#include "platform/Probe.h"
#include "storage/StorageScan.h"
#include "storage/StorageText.h"

#include <chrono>
#include <cstdio>

void Tools::storageReport() {
    auto start = std::chrono::steady_clock::now();
    int64_t swap = Probe::system().swapUsed;
    StorageScan scan(ScanToken::make());
    StorageReport report = scan.run();
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const Layout& layout = Layout::host();
    std::string text = StorageText::text(report, swap, layout.platform, layout.home, seconds);
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}
