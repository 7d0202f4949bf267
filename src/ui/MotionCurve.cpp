#include "ui/MotionCurve.h"

#include <cmath>
#include <numbers>

namespace {

int scaledMs(double seconds, double slow, bool animate) {
    return animate ? int(std::lround(seconds * slow * 1000)) : 0;
}

// Peak overshoot of OutBack with parameter s: the curve is 1 + (s+1)u³ + s·u² with u = t-1,
// whose maximum over [-1, 0] lies at u = -2s / 3(s+1).
double backPeak(double s) { return 4 * s * s * s / (27 * (s + 1) * (s + 1)); }

} // namespace

MotionCurve MotionCurve::easeOut(double seconds, double slow, bool animate) {
    return {scaledMs(seconds, slow, animate), QEasingCurve(QEasingCurve::OutCubic)};
}

MotionCurve MotionCurve::spring(double response, double damping, double slow, bool animate) {
    MotionCurve m{scaledMs(response, slow, animate), QEasingCurve(QEasingCurve::OutBack)};
    m.easing.setOvershoot(backParameter(springOvershoot(damping)));
    return m;
}

double MotionCurve::springOvershoot(double damping) {
    if (!(damping > 0)) return 1;
    if (damping >= 1) return 0;
    return std::exp(-damping * std::numbers::pi / std::sqrt(1 - damping * damping));
}

double MotionCurve::backParameter(double fraction) {
    if (!(fraction > 0)) return 0;
    // backPeak grows monotonically with s; bisect.
    double lo = 0, hi = 100;
    for (int i = 0; i < 60; ++i) {
        double mid = (lo + hi) / 2;
        (backPeak(mid) < fraction ? lo : hi) = mid;
    }
    return (lo + hi) / 2;
}
