#pragma once
// The motions of the design language. Every duration is multiplied by `slow`
// (SORRELIN_SLOWMO) and drops to 0 when the desktop asks for reduced motion or while
// pictures are rendered, so views then stand in their final state at once.
#include "ui/MotionCurve.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

class Motion : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(double slow READ slow CONSTANT)
    Q_PROPERTY(bool reduced READ reduced WRITE setReduced NOTIFY changed)
    Q_PROPERTY(bool rendering READ rendering WRITE setRendering NOTIFY changed)
    // False when effects must not move: reduced motion or rendering. Looping effects
    // (spinners, pulses, shine) run only while this holds.
    Q_PROPERTY(bool animate READ animate NOTIFY changed)
    Q_PROPERTY(MotionCurve quick READ quick NOTIFY changed)
    Q_PROPERTY(MotionCurve hover READ hover NOTIFY changed)
    Q_PROPERTY(MotionCurve enter READ enter NOTIFY changed)
    Q_PROPERTY(MotionCurve press READ press NOTIFY changed)
    Q_PROPERTY(MotionCurve snappy READ snappy NOTIFY changed)
    Q_PROPERTY(MotionCurve smooth READ smooth NOTIFY changed)
    Q_PROPERTY(MotionCurve bouncy READ bouncy NOTIFY changed)

public:
    // Reads SORRELIN_SLOWMO, the desktop's reduced-motion setting and the rendering switch.
    explicit Motion(QObject* parent = nullptr);
    Motion(double slow, bool reduced, bool rendering, QObject* parent = nullptr);

    // The factor of SORRELIN_SLOWMO's value: 1 when absent or not a number, never below 0.1.
    [[nodiscard]] static double slowFactor(const char* value);

    [[nodiscard]] double slow() const { return slowValue; }
    [[nodiscard]] bool reduced() const { return reducedValue; }
    [[nodiscard]] bool rendering() const { return renderingValue; }
    [[nodiscard]] bool animate() const { return !reducedValue && !renderingValue; }
    void setReduced(bool on);
    void setRendering(bool on);

    [[nodiscard]] MotionCurve quick() const { return MotionCurve::easeOut(0.14, slowValue, animate()); }
    [[nodiscard]] MotionCurve hover() const { return MotionCurve::easeOut(0.16, slowValue, animate()); }
    [[nodiscard]] MotionCurve enter() const { return MotionCurve::easeOut(0.28, slowValue, animate()); }
    [[nodiscard]] MotionCurve press() const { return MotionCurve::spring(0.2, 0.72, slowValue, animate()); }
    [[nodiscard]] MotionCurve snappy() const { return MotionCurve::spring(0.3, 0.86, slowValue, animate()); }
    [[nodiscard]] MotionCurve smooth() const { return MotionCurve::spring(0.44, 0.88, slowValue, animate()); }
    [[nodiscard]] MotionCurve bouncy() const { return MotionCurve::spring(0.38, 0.62, slowValue, animate()); }

    // A duration of the effects' own (a shine's sweep, a count-up), slowed; 0 while still.
    Q_INVOKABLE [[nodiscard]] int ms(double seconds) const;

signals:
    void changed();

private:
    double slowValue = 1;
    bool reducedValue = false;
    bool renderingValue = false;
};
