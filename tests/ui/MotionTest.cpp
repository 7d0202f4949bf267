#include "ui/Motion.h"
#include "ui/ReducedMotion.h"

#include <QSignalSpy>

#include <cmath>

#include <gtest/gtest.h>

TEST(MotionSlow, TheFactorIsTheVariablesNumberWithinItsBounds) {
    EXPECT_EQ(Motion::slowFactor(nullptr), 1.0);
    EXPECT_EQ(Motion::slowFactor("3"), 3.0);
    EXPECT_EQ(Motion::slowFactor("2.5\n"), 2.5);
    EXPECT_EQ(Motion::slowFactor("0.5"), 0.5);
    // Never below 0.1, however small or negative the number.
    EXPECT_EQ(Motion::slowFactor("0.01"), 0.1);
    EXPECT_EQ(Motion::slowFactor("0"), 0.1);
    EXPECT_EQ(Motion::slowFactor("-4"), 0.1);
    EXPECT_EQ(Motion::slowFactor("1e-300"), 0.1);
}

TEST(MotionSlow, TextThatIsNotANumberGivesOne) {
    for (const char* bad : {"", " ", "slow", "2x", "x2", "nan", "inf", "-inf", "1e999", "3,5", "0x"})
        EXPECT_EQ(Motion::slowFactor(bad), 1.0) << "'" << bad << "'";
}

TEST(MotionCurves, DurationsAreTheTableTimesTheFactor) {
    Motion normal(1, false, false);
    EXPECT_EQ(normal.quick().duration, 140);
    EXPECT_EQ(normal.hover().duration, 160);
    EXPECT_EQ(normal.enter().duration, 280);
    EXPECT_EQ(normal.press().duration, 200);
    EXPECT_EQ(normal.snappy().duration, 300);
    EXPECT_EQ(normal.smooth().duration, 440);
    EXPECT_EQ(normal.bouncy().duration, 380);
    Motion slowed(4, false, false);
    EXPECT_EQ(slowed.enter().duration, 1120);
    EXPECT_EQ(slowed.bouncy().duration, 1520);
    EXPECT_EQ(slowed.ms(0.75), 3000);
}

TEST(MotionCurves, ReducedMotionAndRenderingStandStill) {
    Motion m(2, false, false);
    QSignalSpy spy(&m, &Motion::changed);
    EXPECT_TRUE(m.animate());
    m.setReduced(true);
    EXPECT_FALSE(m.animate());
    EXPECT_EQ(m.snappy().duration, 0);
    EXPECT_EQ(m.ms(1.0), 0);
    m.setReduced(true); // an equal write notifies nobody
    EXPECT_EQ(spy.count(), 1);
    m.setReduced(false);
    m.setRendering(true);
    EXPECT_FALSE(m.animate());
    EXPECT_EQ(m.quick().duration, 0);
    EXPECT_EQ(spy.count(), 3);
}

// The spring curves are ease-outs that overshoot as far as the spring would: check the
// overshoot by sampling the curve Qt actually runs.
TEST(MotionCurves, SpringsOvershootAsFarAsTheirDampingSays) {
    auto peak = [](const QEasingCurve& c) {
        double best = 0;
        for (int i = 0; i <= 2000; ++i) best = std::max(best, c.valueForProgress(i / 2000.0));
        return best - 1;
    };
    Motion m(1, false, false);
    const double bouncy = peak(m.bouncy().easing), snappy = peak(m.snappy().easing);
    EXPECT_NEAR(bouncy, MotionCurve::springOvershoot(0.62), 0.002);
    EXPECT_NEAR(MotionCurve::springOvershoot(0.62), 0.084, 0.002);
    EXPECT_NEAR(snappy, MotionCurve::springOvershoot(0.86), 0.002);
    // Less damping swings further; a spring at or above critical damping does not swing.
    EXPECT_GT(bouncy, peak(m.press().easing));
    EXPECT_GT(peak(m.press().easing), snappy);
    EXPECT_GT(snappy, peak(m.smooth().easing));
    EXPECT_EQ(MotionCurve::springOvershoot(1.0), 0.0);
    EXPECT_EQ(MotionCurve::backParameter(0), 0.0);
    // Every curve ends where it should.
    for (const MotionCurve& c : {m.quick(), m.press(), m.bouncy()}) EXPECT_NEAR(c.easing.valueForProgress(1), 1, 1e-9);
}

TEST(ReducedMotionSetting, GnomeSaysSoThroughEnableAnimations) {
    EXPECT_EQ(ReducedMotion::fromGnome("false\n"), true);
    EXPECT_EQ(ReducedMotion::fromGnome("true\n"), false);
    EXPECT_EQ(ReducedMotion::fromGnome("No such schema “org.gnome.desktop.interface”\n"), std::nullopt);
    EXPECT_EQ(ReducedMotion::fromGnome(""), std::nullopt);
}

TEST(ReducedMotionSetting, KdeSaysSoWithAZeroFactorInItsOwnGroup) {
    EXPECT_EQ(ReducedMotion::fromKde("[General]\nColorScheme=Breeze\n\n[KDE]\nAnimationDurationFactor=0\n"), true);
    EXPECT_EQ(ReducedMotion::fromKde("[KDE]\nAnimationDurationFactor = 0.5\nLookAndFeelPackage=x\n"), false);
    // The key in another group is not the setting.
    EXPECT_EQ(ReducedMotion::fromKde("[Other]\nAnimationDurationFactor=0\n[KDE]\nSingleClick=false\n"), std::nullopt);
    EXPECT_EQ(ReducedMotion::fromKde("[KDE]\n# AnimationDurationFactor=0\n"), std::nullopt);
    EXPECT_EQ(ReducedMotion::fromKde("[KDE]\nAnimationDurationFactor=fast\n"), std::nullopt);
    EXPECT_EQ(ReducedMotion::fromKde("[KDE]\r\nAnimationDurationFactor=0\r\n"), true);
    EXPECT_EQ(ReducedMotion::fromKde(""), std::nullopt);
}
