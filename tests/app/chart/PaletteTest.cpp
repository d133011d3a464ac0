#include "ChartFixture.h"
#include "SunburstPalette.h"
#include "host/Settings.h"
#include "support/TempTree.h"

namespace lumabroom::test {
namespace {

QColor hsv(double h, double s, double v) { return QColor::fromHsvF(float(h), float(s), float(v)); }
QColor grey(double white) { return QColor::fromRgbF(float(white), float(white), float(white)); }

TEST(SunburstPalette, PositionHueFollowsTheStopsFromTheOffset) {
    struct Case {
        double u; // position on the circle, 0 at the top
        double offset;
        double hue;
    };
    const Case cases[] = {
        {0, 0, 0.385},      {0.25, 0, 0.23},   {0.38, 0, 0.13},  {0.5, 0, 0.02},  {0.75, 0, 0.8},    {0.94, 0, 0.6325},
        {0.125, 0, 0.3075}, {0.3, 0.3, 0.385}, {0.1, 0.35, 0.8}, {1.25, 0, 0.23}, {0.5, -0.25, 0.8},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "u " << c.u << " offset " << c.offset);
        // A segment of zero width at position u.
        const double angle = top + c.u * twoPi;
        EXPECT_NEAR(SunburstPalette::positionHue(angle, angle, c.offset), c.hue, 1e-12);
    }
    EXPECT_NEAR(SunburstPalette::positionHue(top, top + twoPi * 0.5, 0, ChartPalette::colorBlindSafe), 0.25, 1e-12);
}

class SunburstOffsets : public ChartTest {};

TEST_F(SunburstOffsets, BiggestRuleStandsAtTheStartAndTheFirstOfEqualsWins) {
    EXPECT_EQ(SunburstPalette::dominantHueOffset({}, 100), 0);
    results = {rule("a", Category::xcode, {100}), rule("b", Category::xcode, {300}), rule("c", Category::tool, {300}),
               rule("d", Category::tool, {300})};
    const ChartInput in = input();
    // xcode: b 0.3, a 0.1; tool: c 0.3, d 0.3. b comes first and wins.
    EXPECT_DOUBLE_EQ(SunburstPalette::dominantHueOffset(in.groups, 1000), 0.15);
    results[3].entries[0].size = 301;
    const ChartInput later = input();
    EXPECT_DOUBLE_EQ(SunburstPalette::dominantHueOffset(later.groups, 1001), (400 + 301 / 2.0) / 1001);
}

TEST_F(SunburstOffsets, CategoryColourIsItsSliceOrTeal) {
    const QColor teal = SunburstPalette::categoryColor(Category::xcode, {}, false);
    results = {rule("a", Category::xcode, {600}), rule("b", Category::tool, {400})};
    const ChartInput in = input();
    EXPECT_EQ(SunburstPalette::categoryColor(Category::system, in.groups, false), teal);
    // xcode's slice is the biggest rule's, so at the start of the palette; tool's middle is at u 0.5.
    EXPECT_EQ(SunburstPalette::categoryColor(Category::xcode, in.groups, false), hsv(0.385, 0.52, 0.94));
    EXPECT_EQ(SunburstPalette::categoryColor(Category::tool, in.groups, true), hsv(0.02, 0.6, 0.8));
}

TEST(SunburstColours, FillColourTakesTheFirstFittingRow) {
    struct Case {
        const char* name;
        std::optional<double> hue;
        int depth;
        bool active;
        bool hovered;
        bool light;
        QColor color;
    };
    const Case cases[] = {
        {"grey", std::nullopt, 1, true, false, false, grey(0.42)},
        {"grey hovered", std::nullopt, 1, false, true, false, grey(0.62)},
        {"grey light", std::nullopt, 1, false, false, true, grey(0.68)},
        {"grey light hovered", std::nullopt, 1, false, true, true, grey(0.55)},
        {"active over hovered", 0.5, 2, true, true, false, hsv(0.5, 0.78, 1)},
        {"active light", 0.5, 0, true, false, true, hsv(0.5, 0.85, 0.72)},
        {"hovered", 0.5, 0, false, true, false, hsv(0.5, 0.62, 1)},
        {"hovered light", 0.5, 0, false, true, true, hsv(0.5, 0.72, 0.8)},
        {"depth 0", 0.5, 0, false, false, false, hsv(0.5, 0.52, 0.94)},
        {"depth 0 light", 0.5, 0, false, false, true, hsv(0.5, 0.6, 0.8)},
        {"depth 1", 0.5, 1, false, false, false, hsv(0.5, 0.46, 0.97)},
        {"depth 1 light", 0.5, 1, false, false, true, hsv(0.5, 0.52, 0.84)},
        {"depth 2", 0.5, 2, false, false, false, hsv(0.5, 0.4, 1)},
        {"depth 2 light", 0.5, 2, false, false, true, hsv(0.5, 0.46, 0.88)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Segment s;
        s.hue = c.hue;
        s.depth = c.depth;
        s.active = c.active;
        EXPECT_EQ(SunburstDraw::fillColor(s, c.hovered, c.light), c.color);
    }
}

TEST(SunburstColours, ColourBlindPaletteRunsFromVioletToYellowAndKeepsGrey) {
    Segment s;
    s.active = true;
    s.hue = 0;
    EXPECT_EQ(SunburstDraw::fillColor(s, false, true, ChartPalette::colorBlindSafe),
              QColor::fromRgbF(0.267f, 0.005f, 0.329f));
    s.hue = 1;
    EXPECT_EQ(SunburstDraw::fillColor(s, false, false, ChartPalette::colorBlindSafe),
              QColor::fromRgbF(0.992f, 0.906f, 0.145f));
    // Deeper rings fade towards the background, the selected one not at all.
    s.active = false;
    s.depth = 2;
    const QColor faded = SunburstDraw::fillColor(s, false, false, ChartPalette::colorBlindSafe);
    const float expected[] = {0.992f + 0.38f * (0.1f - 0.992f), 0.906f + 0.38f * (0.1f - 0.906f),
                              0.145f + 0.38f * (0.11f - 0.145f)};
    const float got[] = {faded.redF(), faded.greenF(), faded.blueF()};
    for (int c = 0; c < 3; ++c) EXPECT_NEAR(got[c], expected[c], 1.0 / 255) << "channel " << c;
    s.hue.reset();
    EXPECT_EQ(SunburstDraw::fillColor(s, false, false, ChartPalette::colorBlindSafe), grey(0.42));
}

TEST(SunburstColours, PaletteChoiceIsStoredUnderItsKey) {
    TempTree tree;
    Settings::useFolder(tree.root());
    EXPECT_EQ(SunburstPalette::stored(), ChartPalette::hues);
    ASSERT_TRUE(SunburstPalette::store(ChartPalette::colorBlindSafe));
    EXPECT_EQ(Settings::string("chartPalette"), "colorBlindSafe");
    EXPECT_EQ(SunburstPalette::stored(), ChartPalette::colorBlindSafe);
    ASSERT_TRUE(Settings::setString("chartPalette", "sepia"));
    EXPECT_EQ(SunburstPalette::stored(), ChartPalette::hues);
}

} // namespace
} // namespace lumabroom::test
