#include "tools/Tools.h"

#include <gtest/gtest.h>

namespace {
using K = Tools::Job::Kind;
Tools::Job pick(std::vector<std::string> args) {
    args.insert(args.begin(), "/usr/bin/sorrelin");
    return Tools::choose(args);
}
} // namespace

TEST(Tools, OptionTableOrderAndValues) {
    EXPECT_EQ(pick({}).kind, K::none);
    EXPECT_EQ(pick({"--growth", "--scan"}).kind, K::scan);
    EXPECT_EQ(pick({"--scan", "--speed"}).kind, K::scan);
    EXPECT_EQ(pick({"--selftest", "dir", "--scan"}).kind, K::scan);
    EXPECT_EQ(pick({"--render"}).kind, K::none);
    EXPECT_EQ(pick({"--render", "--no-growth"}), (Tools::Job{K::render, "--no-growth", false}));
    EXPECT_EQ(pick({"--render", "a", "--render", "b"}), (Tools::Job{K::render, "a", true}));
    EXPECT_EQ(pick({"--selftest"}).kind, K::none); // no value: no job, the window opens
    EXPECT_EQ(pick({"--selftest", "/tmp/x"}), (Tools::Job{K::selftest, "/tmp/x", true}));
    EXPECT_EQ(pick({"--test-actions", "--make-icon", "out"}).kind, K::makeIcon);
    EXPECT_EQ(pick({"--background"}).kind, K::none);
    EXPECT_EQ(pick({"--scan=1", "-scan", "--SCAN"}).kind, K::none); // exact matches only
    // Argument zero counts too.
    EXPECT_EQ(Tools::choose({"--speed"}).kind, K::speed);
}
