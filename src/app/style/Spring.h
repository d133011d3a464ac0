#pragma once

#include <QAbstractAnimation>

namespace lumabroom {

// A damped harmonic oscillator released from rest at 0 towards 1. `response` is the period of the
// undamped oscillation in seconds; `dampingFraction` is 1 for critical damping, below 1 it overshoots.
struct Spring {
    double response = 0.5;
    double dampingFraction = 0.85;

    // The standard spring of model changes.
    static constexpr Spring standard() { return {0.5, 0.85}; }

    // Position at `seconds` after release; 1 is the target.
    double value(double seconds) const;
    // When the motion stays within `tolerance` of the target from then on.
    double settlingTime(double tolerance = 0.001) const;
};

// Drives one value from a start to an end along a spring, on the toolkit's animation clock. Starting
// it again while it runs starts afresh from where the caller says.
class SpringAnimation : public QAbstractAnimation {
    Q_OBJECT
public:
    explicit SpringAnimation(Spring spring, QObject* parent = nullptr);

    void animate(double from, double to);
    double currentValue() const { return value; }
    int duration() const override;

Q_SIGNALS:
    void valueChanged(double value);

protected:
    void updateCurrentTime(int milliseconds) override;

private:
    Spring spring;
    double from = 0;
    double to = 1;
    double value = 1;
};

} // namespace lumabroom
