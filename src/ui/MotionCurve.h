#pragma once
// One named motion of the design language as QML animations take it: a duration and a curve.
#include <QEasingCurve>
#include <QObject>
#include <QtQml/qqmlregistration.h>

struct MotionCurve {
    Q_GADGET
    QML_VALUE_TYPE(motionCurve)
    Q_PROPERTY(int duration MEMBER duration CONSTANT)
    Q_PROPERTY(QEasingCurve easing MEMBER easing CONSTANT)

public:
    int duration = 0; // milliseconds, already slowed; 0 while animations are off
    QEasingCurve easing{QEasingCurve::OutCubic};

    // An ease-out of `seconds`.
    [[nodiscard]] static MotionCurve easeOut(double seconds, double slow, bool animate);
    // A spring of `response` seconds and a damping fraction. Qt has no spring curve, so it is
    // an ease-out that overshoots as far as such a spring does once (none when damping >= 1).
    [[nodiscard]] static MotionCurve spring(double response, double damping, double slow, bool animate);
    // How far past its target a spring of this damping fraction swings, as a fraction of the way.
    [[nodiscard]] static double springOvershoot(double damping);
    // The overshoot parameter of an OutBack curve that swings exactly `fraction` past its target.
    [[nodiscard]] static double backParameter(double fraction);

    friend bool operator==(const MotionCurve& a, const MotionCurve& b) {
        return a.duration == b.duration && a.easing == b.easing;
    }
};
Q_DECLARE_METATYPE(MotionCurve)
