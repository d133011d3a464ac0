#include "Spring.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace lumabroom {
namespace {

TEST(Spring, UnderdampedOvershootsByTheTextbookAmount) {
    const Spring spring{0.55, 0.85};
    const double omega = 2 * std::numbers::pi / 0.55;
    const double root = std::sqrt(1 - 0.85 * 0.85);
    const double peak = std::numbers::pi / (omega * root);
    EXPECT_EQ(spring.value(0), 0);
    EXPECT_EQ(spring.value(-1), 0);
    EXPECT_NEAR(spring.value(peak), 1 + std::exp(-0.85 * std::numbers::pi / root), 1e-12);
    EXPECT_NEAR(spring.value(2 * peak), 1 - std::exp(-2 * 0.85 * std::numbers::pi / root), 1e-12);
}

TEST(Spring, CriticalAndOverdampedNeverOvershoot) {
    struct Case {
        double damping;
        double atResponse; // the position one response after release
    };
    const double omega = 2 * std::numbers::pi;
    const double r1 = -omega * (2 - std::sqrt(3.0));
    const double r2 = -omega * (2 + std::sqrt(3.0));
    for (const Case& c : {Case{1, 1 - std::exp(-omega) * (1 + omega)},
                          Case{2, 1 - (r2 * std::exp(r1) - r1 * std::exp(r2)) / (r2 - r1)}}) {
        SCOPED_TRACE(c.damping);
        const Spring spring{1, c.damping};
        EXPECT_NEAR(spring.value(1), c.atResponse, 1e-12);
        double previous = 0;
        for (int i = 1; i <= 400; ++i) {
            const double v = spring.value(i * 0.02);
            EXPECT_LE(v, 1);
            EXPECT_GE(v, previous);
            previous = v;
        }
    }
}

TEST(Spring, SettlesWithinToleranceFromItsSettlingTimeOn) {
    for (const Spring spring :
         {Spring::standard(), Spring{0.55, 0.85}, Spring{0.3, 0.4}, Spring{1, 1}, Spring{0.8, 1.6}}) {
        SCOPED_TRACE(testing::Message() << spring.response << " " << spring.dampingFraction);
        const double settled = spring.settlingTime(0.001);
        for (int i = 0; i <= 1000; ++i) EXPECT_LE(std::abs(1 - spring.value(settled + i * 0.005)), 0.001);
        // An animation that runs on long after the motion has stopped wastes frames.
        double last = 0;
        for (int i = 0; i < 2000; ++i)
            if (std::abs(1 - spring.value(i * settled / 2000)) > 0.001) last = i * settled / 2000;
        EXPECT_LT(settled, 1.5 * last);
    }
}

TEST(SpringAnimation, MapsTimeOntoTheSpringBetweenItsEnds) {
    const Spring spring{0.55, 0.85};
    SpringAnimation animation(spring);
    std::vector<double> seen;
    QObject::connect(&animation, &SpringAnimation::valueChanged, &animation, [&](double v) { seen.push_back(v); });
    animation.animate(2, 4);
    EXPECT_EQ(animation.state(), QAbstractAnimation::Running);
    EXPECT_EQ(animation.duration(), int(std::ceil(spring.settlingTime() * 1000)));
    animation.setCurrentTime(261);
    animation.setCurrentTime(animation.duration());
    ASSERT_GE(seen.size(), 3u);
    EXPECT_EQ(seen.front(), 2);
    EXPECT_DOUBLE_EQ(seen[seen.size() - 2], 2 + 2 * spring.value(0.261));
    EXPECT_EQ(seen.back(), 4);
    EXPECT_EQ(animation.currentValue(), 4);
    EXPECT_EQ(animation.state(), QAbstractAnimation::Stopped);
}

} // namespace
} // namespace lumabroom
