// Big single items: the assistant's VM and its lock, browser models, Docker's disk image and
// device backups, over both layouts.
#include "support/FakeAppBundles.h"
#include "scan/ScannerAccess.h"
#include "support/FakeFacts.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

namespace {

std::vector<std::string> idsOf(const std::vector<Candidate>& list) {
    std::vector<std::string> ids;
    for (const auto& c : list) ids.push_back(c.id);
    return ids;
}

} // namespace

TEST(BigItems, VirtualMachineIsLockedWhileItRunsOrInDoubt) {
    TempTree t;
    t.file("Library/Application Support/Claude/vm_bundles/claudevm.bundle/disk.img", 10);
    const std::string bundles = t.path("Library/Application Support/Claude/vm_bundles");
    FakeFacts facts;
    FakeAppBundles apps;
    auto vm = [&] {
        Scanner s(Layout::macos(t.root()), {}, nullptr, facts, apps);
        auto list = ScannerTestAccess::bigItems(s);
        EXPECT_EQ(idsOf(list), std::vector<std::string>{"claude-vm"});
        return list.empty() ? Candidate{} : list[0];
    };

    Candidate free = vm();
    EXPECT_FALSE(free.lockedReason);
    EXPECT_FALSE(free.defaultOn);
    EXPECT_EQ(free.tier, Tier::yourCall);
    EXPECT_TRUE(free.removal.isTrash());
    EXPECT_EQ(free.location, "~/Library/Application Support/Claude/vm_bundles");

    // A machine process with files open elsewhere leaves it free.
    facts.procs = {{40, "com.apple.Virtualization.VirtualMachine", "/", "/x"}};
    facts.open[40] = std::vector<std::string>{"/private/var/other.img", bundles + "-old/disk.img"};
    EXPECT_FALSE(vm().lockedReason);
    // One running from the bundle locks it.
    facts.open[40] = std::vector<std::string>{bundles + "/claudevm.bundle/disk.img"};
    EXPECT_EQ(vm().lockedReason, "Claude's VM is running from it · quit Claude to free it");
    // One whose open files cannot be read locks it too.
    facts.open[40] = std::nullopt;
    EXPECT_TRUE(vm().lockedReason);
    // Other processes are not asked.
    facts.procs = {{41, "Virtualization", "/", "/x"}};
    facts.open[41] = std::nullopt;
    EXPECT_FALSE(vm().lockedReason);

    // No such machine on Linux.
    t.file(".config/Claude/vm_bundles/x", 10);
    Scanner linux(Layout::linux(t.root()), {}, nullptr, facts, apps);
    EXPECT_TRUE(ScannerTestAccess::bigItems(linux).empty());
}

TEST(BigItems, BrowserModelsDockerAndBackups) {
    TempTree t;
    t.file("Library/Application Support/Google/Chrome/OptGuideOnDeviceModel/2024.1/weights.bin", 10);
    t.file("Library/Application Support/BraveSoftware/Brave-Browser/OptGuideOnDeviceModel/w", 10);
    t.file("Library/Containers/com.docker.docker/Data/vms/0/data/Docker.raw", 10);
    t.file("Library/Application Support/MobileSync/Backup/00008110-A/Manifest.db", 10);
    t.file("Library/Application Support/MobileSync/Backup/00008110-B/Manifest.db", 10);
    t.file("Library/Application Support/MobileSync/Backup/.DS_Store", 10);
    FakeFacts facts;
    FakeAppBundles apps;
    Scanner mac(Layout::macos(t.root()), {}, nullptr, facts, apps);
    auto list = ScannerTestAccess::bigItems(mac);
    // Docker's image stays out: no Docker app is installed on this machine's /Applications.
    EXPECT_EQ(idsOf(list), (std::vector<std::string>{"chrome-model", "brave-model", "ios-backups"}));
    const Candidate* chrome = withId(list, "chrome-model");
    EXPECT_EQ(chrome->name, "Chrome's built-in AI model");
    EXPECT_EQ(chrome->note, "Comes back unless you turn it off in chrome://flags");
    EXPECT_EQ(withId(list, "brave-model")->note, "Comes back unless you turn it off in brave://flags");
    const Candidate* backups = withId(list, "ios-backups");
    const std::string folder = t.path("Library/Application Support/MobileSync/Backup");
    EXPECT_EQ(backups->paths, (std::vector<std::string>{folder + "/00008110-A", folder + "/00008110-B"}));
    EXPECT_EQ(backups->reveal, std::vector<std::string>{folder});
    EXPECT_EQ(backups->location, "~/Library/Application Support/MobileSync/Backup");
}

TEST(BigItems, LinuxModelsAndDockerDesktopOnlyWhenInstalled) {
    TempTree t;
    t.file(".config/google-chrome/OptGuideOnDeviceModel/w", 10);
    t.file(".config/microsoft-edge/OptGuideOnDeviceModel/w", 10);
    t.file(".docker/desktop/vms/0/data/Docker.raw", 10);
    FakeFacts facts;
    FakeAppBundles apps;
    Scanner before(Layout::linux(t.root()), {}, nullptr, facts, apps);
    // The disk image of a removed Docker Desktop is not listed.
    EXPECT_EQ(idsOf(ScannerTestAccess::bigItems(before)), (std::vector<std::string>{"chrome-model", "edge-model"}));

    apps.install("docker-desktop", "Docker Desktop");
    Scanner after(Layout::linux(t.root()), {}, nullptr, facts, apps);
    auto list = ScannerTestAccess::bigItems(after);
    EXPECT_EQ(idsOf(list), (std::vector<std::string>{"chrome-model", "edge-model", "docker"}));
    const Candidate* docker = withId(list, "docker");
    EXPECT_EQ(docker->location, "~/.docker/desktop/vms/0/data/Docker.raw");
    EXPECT_EQ(withId(list, "chrome-model")->location, "~/.config/google-chrome/OptGuideOnDeviceModel");
}
