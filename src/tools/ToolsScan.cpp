// The cleaning report: what a scan finds, tier by tier, in fixed columns.
#include "foundation/DiskInfo.h"
#include "foundation/Fmt.h"
#include "foundation/Text.h"
#include "tools/Tools.h"
#include "scan/Scanner.h"
#include "scan/ScanReport.h"

#include <chrono>
#include <cstdio>

void Tools::scanReport() {
    auto start = std::chrono::steady_clock::now();
    Scanner scanner;
    auto items = scanner.run();
    DiskInfo disk = DiskInfo::current();
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::string text = ScanReport::text(items, disk, seconds);
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}
