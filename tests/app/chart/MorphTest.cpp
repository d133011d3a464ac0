#include "Morph.h"
#include "ChartFixture.h"

namespace lumabroom::test {
namespace {

constexpr double radius = 100;

Segment segment(const std::string& id, double start, double end, Band band = {0.3, 0.5}, int depth = 1,
                bool active = false) {
    Segment s;
    s.id = id;
    s.start = start;
    s.end = end;
    s.band = band;
    s.hue = 0.3;
    s.depth = depth;
    s.active = active;
    return s;
}

struct Expected {
    std::string id;
    double start; // before the gap
    double end;
    double inner; // fractions of the radius
    double outer;
    double alpha;
};

void expectShapes(const std::vector<DrawnSegment>& shapes, const std::vector<Expected>& expected) {
    ASSERT_EQ(shapes.size(), expected.size());
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        SCOPED_TRACE(expected[i].id);
        const DrawnSegment& s = shapes[i];
        const double gap = std::min((expected[i].end - expected[i].start) * 0.25, 0.01);
        EXPECT_EQ(s.id, expected[i].id);
        EXPECT_DOUBLE_EQ(s.start, expected[i].start + gap);
        EXPECT_DOUBLE_EQ(s.end, expected[i].end - gap);
        EXPECT_DOUBLE_EQ(s.innerRadius, radius * expected[i].inner);
        EXPECT_DOUBLE_EQ(s.outerRadius, radius * expected[i].outer);
        EXPECT_DOUBLE_EQ(s.alpha, expected[i].alpha);
    }
}

std::vector<DrawnSegment> frame(std::span<const Segment> from, std::span<const Segment> to, double progress,
                                std::optional<std::string> hover = std::nullopt) {
    return Morph::frame(
        {.from = from, .to = to, .progress = progress, .hoverID = hover, .light = false, .palette = ChartPalette::hues},
        radius);
}

const std::vector<Segment> from{segment("gone", 0, 1), segment("stays", 1, 2),
                                segment("deco:/p", 2, 3, {0.45, 0.92}, 2)};
const std::vector<Segment> to{segment("stays", 0, 0.5, {0.2, 0.36}), segment("new", 0.5, 1.5), segment("/p", 1.5, 3)};

TEST(MorphFrame, SettledOrWithoutOriginDrawsTheListAsItIs) {
    const std::vector<Expected> settled{
        {"stays", 0, 0.5, 0.2, 0.36, 1}, {"new", 0.5, 1.5, 0.3, 0.5, 1}, {"/p", 1.5, 3, 0.3, 0.5, 1}};
    for (double p : {1.0, 1.3}) {
        SCOPED_TRACE(p);
        expectShapes(frame(from, to, p), settled);
    }
    SCOPED_TRACE("no origin");
    expectShapes(frame({}, to, 0), settled);
}

TEST(MorphFrame, FoldTravelAndUnfold) {
    SCOPED_TRACE("halfway");
    expectShapes(frame(from, to, 0.5), {
                                           {"gone", 0.25, 0.75, 0.3, 0.5, 0.5}, // folds to its middle and fades
                                           {"stays", 0.5, 1.25, 0.25, 0.43, 1}, // travels, band too
                                           {"new", 0.75, 1.25, 0.3, 0.5, 0.5},  // unfolds from its middle
                                           {"/p", 1.75, 3, 0.375, 0.71, 1},     // the decoration becomes the entry
                                       });
    SCOPED_TRACE("start, and below it");
    for (double p : {0.0, -0.4}) {
        expectShapes(frame(from, to, p),
                     {{"gone", 0, 1, 0.3, 0.5, 1}, {"stays", 1, 2, 0.3, 0.5, 1}, {"/p", 2, 3, 0.45, 0.92, 1}});
    }
}

TEST(MorphFrame, WhatIsAlmostGoneIsNotDrawn) {
    struct Case {
        double progress;
        std::vector<std::string> ids;
    };
    for (const Case& c : {Case{0.03, {"gone", "stays", "/p"}}, Case{0.04, {"gone", "stays", "new", "/p"}},
                          Case{0.96, {"gone", "stays", "new", "/p"}}, Case{0.975, {"stays", "new", "/p"}}}) {
        SCOPED_TRACE(c.progress);
        std::vector<std::string> ids;
        for (const DrawnSegment& s : frame(from, to, c.progress)) ids.push_back(s.id);
        EXPECT_EQ(ids, c.ids);
    }
    SCOPED_TRACE("an empty list folds the old one only");
    expectShapes(frame(from, {}, 0.5), {{"gone", 0.25, 0.75, 0.3, 0.5, 0.5},
                                        {"stays", 1.25, 1.75, 0.3, 0.5, 0.5},
                                        {"deco:/p", 2.25, 2.75, 0.45, 0.92, 0.5}});
}

TEST(MorphFrame, ColourIsTheNewSegmentsFromTheStart) {
    Segment old = segment("r", 0, 1);
    old.hue = 0.9;
    Segment now = segment("r", 1, 2);
    now.hue = 0.1;
    const auto shapes = frame(std::span(&old, 1), std::span(&now, 1), 0.1);
    ASSERT_EQ(shapes.size(), 1u);
    EXPECT_EQ(shapes[0].color, SunburstDraw::fillColor(now, false, false));
}

TEST(MorphFrame, HighlightWaitsUntilTheMorphHasLanded) {
    const std::vector<Segment> list{segment("a", 0, 1), segment("b", 1, 2, {0.3, 0.5}, 1, true)};
    struct Case {
        double progress;
        bool emphasised;
    };
    for (const Case& c : {Case{0.5, false}, Case{0.98, false}, Case{0.99, true}, Case{1, true}}) {
        SCOPED_TRACE(c.progress);
        const auto shapes = frame(list, list, c.progress, "a");
        ASSERT_EQ(shapes.size(), 2u);
        for (const DrawnSegment& s : shapes) {
            SCOPED_TRACE(s.id);
            EXPECT_EQ(s.emphasised, c.emphasised);
            EXPECT_DOUBLE_EQ(s.outerRadius, 50 + (c.emphasised ? 4 : 0));
        }
        EXPECT_EQ(shapes[0].color, SunburstDraw::fillColor(list[0], c.emphasised, false));
        // Selected keeps its colour in flight.
        EXPECT_EQ(shapes[1].color, SunburstDraw::fillColor(list[1], false, false));
    }
}

TEST(MorphFrame, GapAndThinSlices) {
    const std::vector<Segment> list{segment("wide", 0, 1), segment("thin", 1, 1.02), segment("hair", 0, 0.0008),
                                    segment("visible", 2, 2.0009)};
    const auto shapes = frame({}, list, 1);
    ASSERT_EQ(shapes.size(), 3u);
    EXPECT_DOUBLE_EQ(shapes[0].start, 0.01);
    EXPECT_DOUBLE_EQ(shapes[0].end, 0.99);
    EXPECT_DOUBLE_EQ(shapes[1].start, 1.005);
    EXPECT_DOUBLE_EQ(shapes[1].end, 1.015);
    EXPECT_EQ(shapes[2].id, "visible");
}

TEST(MorphFrame, NotchesCutLongDecorations) {
    struct Case {
        const char* name;
        Band band;
        int depth;
        std::vector<double> notches; // fractions of the radius
    };
    const Case cases[] = {
        {"0.45 to 0.92", {0.45, 0.92}, 2, {0.59, 0.73, 0.87}},
        {"exactly 0.15", {0.21, 0.36}, 2, {}},
        {"long but not a decoration", {0.26, 0.88}, 1, {}},
        {"0.36 to 0.9", {0.36, 0.9}, 2, {0.5, 0.64, 0.78}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Segment s = segment("s", 0, 1, c.band, c.depth);
        const auto shapes = frame({}, std::span(&s, 1), 1);
        ASSERT_EQ(shapes.size(), 1u);
        ASSERT_EQ(shapes[0].notchRadii.size(), c.notches.size());
        for (std::size_t i = 0; i < c.notches.size(); ++i)
            EXPECT_DOUBLE_EQ(shapes[0].notchRadii[i], radius * c.notches[i]);
    }
}

} // namespace
} // namespace lumabroom::test
