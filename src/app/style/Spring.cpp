#include "Spring.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace lumabroom {

double Spring::value(double t) const {
    if (t <= 0) return 0;
    const double omega = 2 * std::numbers::pi / response;
    const double zeta = dampingFraction;
    if (zeta < 1) {
        const double omegaD = omega * std::sqrt(1 - zeta * zeta);
        return 1 - std::exp(-zeta * omega * t) * (std::cos(omegaD * t) + zeta * omega / omegaD * std::sin(omegaD * t));
    }
    if (zeta == 1) return 1 - std::exp(-omega * t) * (1 + omega * t);
    const double root = std::sqrt(zeta * zeta - 1);
    const double r1 = -omega * (zeta - root);
    const double r2 = -omega * (zeta + root);
    return 1 - (r2 * std::exp(r1 * t) - r1 * std::exp(r2 * t)) / (r2 - r1);
}

double Spring::settlingTime(double tolerance) const {
    const double omega = 2 * std::numbers::pi / response;
    const double zeta = dampingFraction;
    // Underdamped: the error stays under its envelope e^(−ζωt) / √(1 − ζ²).
    if (zeta < 1) return std::max(0.0, std::log(1 / (std::sqrt(1 - zeta * zeta) * tolerance)) / (zeta * omega));
    // Otherwise the approach never overshoots, so the error only shrinks: bisect for it.
    double high = response;
    while (1 - value(high) > tolerance) high *= 2;
    double low = 0;
    for (int i = 0; i < 60; ++i) {
        const double middle = (low + high) / 2;
        (1 - value(middle) > tolerance ? low : high) = middle;
    }
    return high;
}

SpringAnimation::SpringAnimation(Spring spring, QObject* parent) : QAbstractAnimation(parent), spring(spring) {}

void SpringAnimation::animate(double start, double target) {
    stop();
    from = start;
    to = target;
    value = start;
    Q_EMIT valueChanged(value);
    QAbstractAnimation::start();
}

int SpringAnimation::duration() const { return int(std::ceil(spring.settlingTime() * 1000)); }

void SpringAnimation::updateCurrentTime(int milliseconds) {
    value = milliseconds >= duration() ? to : from + (to - from) * spring.value(milliseconds / 1000.0);
    Q_EMIT valueChanged(value);
}

} // namespace lumabroom
