#include "ui/Motion.h"

#include "foundation/Rendering.h"
#include "ui/ReducedMotion.h"

#include <cmath>
#include <cstdlib>

// Pictures have no motion at all, so the desktop's setting is not asked (asking it can write
// into the home folder).
Motion::Motion(QObject* parent)
    : Motion(slowFactor(std::getenv("SORRELIN_SLOWMO")), Tools::rendering ? true : ReducedMotion::system(), Tools::rendering,
             parent) {}

Motion::Motion(double slow, bool reduced, bool rendering, QObject* parent)
    : QObject(parent), slowValue(slow), reducedValue(reduced), renderingValue(rendering) {}

double Motion::slowFactor(const char* value) {
    if (value == nullptr) return 1;
    char* end = nullptr;
    double v = std::strtod(value, &end);
    // Trailing blanks are tolerated; anything else means the text is not a number.
    while (end != value && end != nullptr && (*end == ' ' || *end == '\t' || *end == '\n')) ++end;
    if (end == value || end == nullptr || *end != '\0' || !std::isfinite(v)) return 1;
    return v < 0.1 ? 0.1 : v;
}

void Motion::setReduced(bool on) {
    if (on == reducedValue) return;
    reducedValue = on;
    emit changed();
}

void Motion::setRendering(bool on) {
    if (on == renderingValue) return;
    renderingValue = on;
    emit changed();
}

int Motion::ms(double seconds) const {
    return animate() && seconds > 0 ? int(std::lround(seconds * slowValue * 1000)) : 0;
}
