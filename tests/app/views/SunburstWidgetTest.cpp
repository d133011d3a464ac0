#include "SunburstWidget.h"

#include "text/Localization.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace lumabroom {
namespace {

RuleScanResult rule(const std::string& id, Category category, std::int64_t size, SafetyLevel safety) {
    RuleScanResult r;
    r.rule.id = id;
    r.rule.nameKey = id;
    r.rule.category = category;
    r.rule.safety = safety;
    r.entries = {ScanEntry{.url = "/r/" + id + "/big", .size = size, .label = std::nullopt},
                 ScanEntry{.url = "/r/" + id + "/small", .size = size / 2, .label = std::nullopt}};
    return r;
}

// A model of two rules in two categories, the second report-only, and a recorder of taps.
class SunburstWidgetTest : public ::testing::Test {
protected:
    void SetUp() override {
        results = {rule("a", Category::xcode, 600, SafetyLevel::safe),
                   rule("b", Category::system, 300, SafetyLevel::reportOnly)};
        widget.resize(440, 440); // R = 196
        widget.setProvider(provider());
        QObject::connect(&widget, &SunburstWidget::tapped, &widget,
                         [this](const TapDecision& d) { taps.push_back(d); });
    }

    SunburstWidget::Provider provider() {
        return [this] {
            ChartInput in;
            for (const RuleScanResult& r : results) in.groups.push_back(VisibleGroup{r.rule.category, {&r}});
            in.results = results;
            in.route = route;
            return in;
        };
    }
    QPointF at(double fraction, double angle) const {
        return {220 + 196 * fraction * std::cos(angle), 220 + 196 * fraction * std::sin(angle)};
    }
    void send(QEvent::Type type, QPointF point) {
        QMouseEvent event(type, point, widget.mapToGlobal(point), Qt::LeftButton,
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&widget, &event);
    }
    void press(int key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(&widget, &event);
    }

    std::vector<RuleScanResult> results;
    Route route = Route::overview();
    SunburstWidget widget;
    std::vector<TapDecision> taps;
};

constexpr double top = -std::numbers::pi / 2;

TEST_F(SunburstWidgetTest, ClicksAndKeysBecomeDecisions) {
    send(QEvent::MouseButtonRelease, at(0.2, top + 0.1));
    send(QEvent::MouseButtonRelease, at(0.1, 0)); // the overview's hole does nothing
    route = Route::rule("a");
    widget.refresh();
    send(QEvent::MouseButtonRelease, at(0.5, top + 0.1));
    press(Qt::Key_Escape);
    route = Route::rule("b");
    widget.refresh();
    send(QEvent::MouseButtonRelease, at(0.5, top + 0.1)); // report-only entries don't react
    using A = TapDecision::Action;
    EXPECT_EQ(taps, (std::vector<TapDecision>{TapDecision::go(A::openCategory, Route::category(Category::xcode)),
                                              TapDecision::toggle("a", "/r/a/big"),
                                              TapDecision::go(A::goBack, Route::category(Category::xcode))}));
}

TEST_F(SunburstWidgetTest, HoverFollowsThePointerAndTheKeys) {
    send(QEvent::MouseMove, at(0.4, top + 0.1));
    EXPECT_EQ(widget.hoveredID(), "a");
    send(QEvent::MouseMove, at(0.05, 0));
    EXPECT_EQ(widget.hoveredID(), std::nullopt);
    press(Qt::Key_Right);
    EXPECT_EQ(widget.hoveredID(), "cat:xcode");
    press(Qt::Key_Left);
    press(Qt::Key_Left);
    EXPECT_EQ(widget.hoveredID(), "deco:/r/b/big");
    press(Qt::Key_Return);
    EXPECT_EQ(taps, (std::vector<TapDecision>{TapDecision::go(TapDecision::Action::openRule, Route::rule("b"))}));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&widget, &leave);
    EXPECT_EQ(widget.hoveredID(), std::nullopt);
}

TEST_F(SunburstWidgetTest, RouteChangeRestartsTheMorphAndDataChangeDoesNot) {
    EXPECT_EQ(widget.morphProgress(), 1);
    results[0].entries[0].size = 900;
    widget.refresh();
    EXPECT_EQ(widget.morphProgress(), 1);
    route = Route::category(Category::xcode);
    widget.refresh();
    EXPECT_EQ(widget.morphProgress(), 0);
}

TEST_F(SunburstWidgetTest, PictureFollowsHoverAndRouteWithoutStaleFrames) {
    const auto picture = [this] {
        QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::black);
        widget.render(&image);
        return image;
    };
    const QImage plain = picture();
    EXPECT_EQ(picture(), plain);
    send(QEvent::MouseMove, at(0.4, top + 0.1));
    const QImage hovered = picture();
    EXPECT_NE(hovered, plain);
    send(QEvent::MouseMove, at(0.4, top + 0.2)); // the same segment: only the tooltip moves
    EXPECT_NE(picture(), hovered);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&widget, &leave);
    EXPECT_EQ(picture(), plain);
    results[0].entries[0].size = 900;
    widget.refresh();
    EXPECT_NE(picture(), plain);
}

// The picture kept between frames is painted again only where the hover changed it: the result must
// be the picture a widget that went straight there paints.
TEST_F(SunburstWidgetTest, HoverChangeRepaintsTheSamePictureAsAFreshWidget) {
    const auto picture = [](SunburstWidget& w, double ratio) {
        QImage image(w.size() * ratio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::black);
        w.render(&image);
        return image;
    };
    const QPointF xcode = at(0.25, top + 0.1);
    const QPointF system = at(0.25, top + 5);
    for (double ratio : {1.0, 2.0, 1.5}) {
        SCOPED_TRACE(ratio);
        SunburstWidget fresh;
        fresh.resize(widget.size());
        fresh.setProvider(provider());
        const auto moveBoth = [&](QPointF point) {
            send(QEvent::MouseMove, point);
            QMouseEvent event(QEvent::MouseMove, point, fresh.mapToGlobal(point), Qt::NoButton, Qt::NoButton,
                              Qt::NoModifier);
            QApplication::sendEvent(&fresh, &event);
        };
        picture(widget, ratio);
        send(QEvent::MouseMove, xcode);
        EXPECT_EQ(widget.hoveredID(), "cat:xcode");
        picture(widget, ratio);
        moveBoth(system);
        EXPECT_EQ(widget.hoveredID(), "cat:sys");
        EXPECT_EQ(picture(widget, ratio), picture(fresh, ratio));
        moveBoth(at(0.05, top)); // the hole: no glow left
        EXPECT_EQ(picture(widget, ratio), picture(fresh, ratio));
    }
}

TEST_F(SunburstWidgetTest, HoverIsTakenAgainAfterTheRouteChanges) {
    send(QEvent::MouseMove, at(0.25, top + 0.1));
    EXPECT_EQ(widget.hoveredID(), "cat:xcode");
    route = Route::category(Category::xcode);
    widget.refresh();
    EXPECT_EQ(widget.hoveredID(), "a"); // the category's rule ring starts at 0.2
}

TEST_F(SunburstWidgetTest, IsReachableWithoutAPointer) {
    EXPECT_EQ(widget.accessibleName().toStdString(), "磁盘占用图");
    EXPECT_EQ(widget.accessibleDescription().toStdString(), "点击扇区深入");
    EXPECT_EQ(widget.focusPolicy(), Qt::StrongFocus);
}

} // namespace
} // namespace lumabroom
