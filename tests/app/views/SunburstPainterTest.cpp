#include "SunburstPainter.h"
#include "Morph.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace lumabroom {
namespace {

constexpr double pi = std::numbers::pi;
constexpr int side = 400;
constexpr double radius = side / 2.0 - 24; // 176
const QPointF centre(side / 2.0, side / 2.0);
const QColor background(20, 20, 24);
const QRgb backgroundRgb = background.rgb();

Segment segment(const std::string& id, double start, double end, double hue, bool active = false) {
    Segment s;
    s.id = id;
    s.start = start;
    s.end = end;
    s.band = {0.6, 0.9};
    s.hue = hue;
    s.depth = 1;
    s.active = active;
    return s;
}

// a: top to the right; c: the right to the bottom; b, selected: the bottom to the left.
const std::vector<Segment> list{segment("a", -pi / 2, 0, 0.1), segment("c", 0, pi / 2, 0.5),
                                segment("b", pi / 2, pi, 0.7, true)};

QImage render(const std::vector<Segment>& segments, double ratio, SunburstPainter::GlowCache* glows = nullptr) {
    QImage image(int(side * ratio), int(side * ratio), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(background);
    QPainter painter(&image);
    const auto shapes = Morph::frame({.from = {},
                                      .to = segments,
                                      .progress = 1,
                                      .hoverID = std::nullopt,
                                      .light = false,
                                      .palette = ChartPalette::hues},
                                     radius);
    SunburstPainter::paint(painter, centre, shapes, false, {}, glows);
    return image;
}

// Compared as 8-bit RGB, which is what the image holds.
QRgb pixel(const QImage& image, double ratio, double fraction, double angle, double extraPoints = 0) {
    const double r = radius * fraction + extraPoints;
    const QPointF p = centre + QPointF(r * std::cos(angle), r * std::sin(angle));
    return image.pixel(int(p.x() * ratio), int(p.y() * ratio));
}

TEST(SunburstPainter, SegmentsGapsSelectionAndGlow) {
    for (double ratio : {1.0, 2.0}) {
        SCOPED_TRACE(ratio);
        const QImage image = render(list, ratio);
        for (const Segment& s : list) {
            SCOPED_TRACE(s.id);
            EXPECT_EQ(pixel(image, ratio, 0.75, (s.start + s.end) / 2), SunburstDraw::fillColor(s, false, false).rgb());
        }
        // Between a and c, in the middle of the ring: 0.02 radians at 0.75 R is 2.6 points.
        EXPECT_EQ(pixel(image, ratio, 0.75, 0), backgroundRgb);
        // The selected segment reaches 4 points further, and glows beyond that.
        const double bMiddle = 3 * pi / 4;
        EXPECT_EQ(pixel(image, ratio, 0.9, bMiddle, 2), SunburstDraw::fillColor(list[2], false, false).rgb());
        EXPECT_EQ(pixel(image, ratio, 0.9, -pi / 4, 2), backgroundRgb);
        const QRgb glow = pixel(image, ratio, 0.9, bMiddle, 9);
        EXPECT_NE(glow, backgroundRgb);
        EXPECT_EQ(pixel(image, ratio, 0.9, -pi / 4, 9), backgroundRgb);
        EXPECT_EQ(pixel(image, ratio, 0.9, bMiddle, 40), backgroundRgb); // the glow fades out
        EXPECT_EQ(pixel(image, ratio, 0.3, bMiddle), backgroundRgb);     // the hole stays clear
    }
}

TEST(SunburstPainter, NotchesAreStrokedInTheBackgroundColour) {
    Segment deco = segment("deco", -pi / 2, 0, 0.2);
    deco.depth = 2;
    deco.band = {0.45, 0.92};
    const QImage image = render({deco}, 1);
    const double middle = -pi / 4;
    EXPECT_EQ(pixel(image, 1, 0.59, middle), SunburstDraw::notchColor(false).rgb());
    EXPECT_EQ(pixel(image, 1, 0.66, middle), SunburstDraw::fillColor(deco, false, false).rgb());
}

// A kept glow is used only for the same shape in the same place and colour.
TEST(SunburstPainter, KeptGlowsPaintWhatFreshOnesDo) {
    Segment moved = list[2];
    moved.start -= 0.3;
    Segment recoloured = list[2];
    recoloured.hue = 0.3;
    Segment shrunk = list[2];
    shrunk.band.outer = 0.8;
    SunburstPainter::GlowCache glows;
    for (const auto& segments :
         {list, list, std::vector{list[0], list[1], moved}, std::vector{list[0], list[1], recoloured},
          std::vector{list[0], list[1], shrunk}, list}) {
        SCOPED_TRACE(segments[2].start + *segments[2].hue + segments[2].band.outer);
        for (double ratio : {1.0, 2.0}) {
            SCOPED_TRACE(ratio);
            const QImage fresh = render(segments, ratio);
            EXPECT_EQ(render(segments, ratio, &glows), fresh);
        }
    }
    EXPECT_EQ(glows.entries.size(), 8u); // four glows at two ratios
}

TEST(SunburstPainter, SectorPolygonKeepsItsChordsCloseToTheArcs) {
    struct Case {
        double inner, outer, start, end, scale;
        int points; // both arcs together
    };
    // A tenth of a pixel allows 0.0711 radians per chord at 158.4 pixels, 0.0953 at 88, 0.0503 at 316.8
    // and 0.0674 at 176.
    const Case cases[] = {
        {0.5 * radius, 0.9 * radius, -pi / 2, pi / 2, 1, 46 + 34},
        {0.5 * radius, 0.9 * radius, -pi / 2, pi / 2, 2, 64 + 48},
        {0, 0.9 * radius, 0, 2 * pi, 1, 90 + 3},      // a disc: the inner arc collapses to the centre
        {0.5 * radius, 0.9 * radius, 0, 0.002, 1, 4}, // a spike: one chord each way
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.inner << " " << c.end << " " << c.scale);
        const QPolygonF polygon = SunburstPainter::sectorPolygon(centre, c.inner, c.outer, c.start, c.end, c.scale);
        ASSERT_EQ(polygon.size(), c.points);
        const auto at = [&](double r, double angle) {
            return centre + QPointF(r * std::cos(angle), r * std::sin(angle));
        };
        EXPECT_EQ(polygon.front(), at(c.outer, c.start));
        EXPECT_EQ(polygon.back(), at(c.inner, c.start));
        double worst = 0;
        for (qsizetype i = 0; i + 1 < polygon.size(); ++i) {
            const QPointF a = polygon[i] - centre;
            const QPointF b = polygon[i + 1] - centre;
            const double ra = std::hypot(a.x(), a.y());
            if (std::abs(ra - std::hypot(b.x(), b.y())) > 1e-9) continue; // the radial edge
            const QPointF mid = (a + b) / 2;
            worst = std::max(worst, (ra - std::hypot(mid.x(), mid.y())) * c.scale);
        }
        EXPECT_LE(worst, 0.1);
        if (c.end - c.start > 0.1) {
            EXPECT_GT(worst, 0.05); // no more points than the tolerance needs
        }
    }
}

TEST(SunburstPainter, BoxBlurKeepsAFlatImageAndSpreadsAPoint) {
    QImage flat(20, 10, QImage::Format_ARGB32_Premultiplied);
    flat.fill(QColor(40, 80, 120));
    QImage blurred = flat;
    SunburstPainter::boxBlur(blurred, 3);
    EXPECT_EQ(blurred, flat);

    QImage point(21, 21, QImage::Format_ARGB32_Premultiplied);
    point.fill(Qt::transparent);
    point.setPixelColor(10, 10, QColor(255, 255, 255));
    SunburstPainter::boxBlur(point, 1);
    // Three passes of a 3-wide box along each axis spread a point over 7 × 7 pixels, the far corners
    // too faint for 8 bits.
    EXPECT_GT(point.pixelColor(10, 10).alpha(), point.pixelColor(11, 10).alpha());
    EXPECT_GT(point.pixelColor(12, 12).alpha(), 0);
    EXPECT_EQ(point.pixelColor(14, 10).alpha(), 0);
    EXPECT_EQ(point.pixelColor(10, 6).alpha(), 0);
}

} // namespace
} // namespace lumabroom
