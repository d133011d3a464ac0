#include "Sunburst.h"
#include "ChartFixture.h"

#include <cmath>

namespace lumabroom::test {
namespace {

std::vector<std::string> ids(const std::vector<Segment>& list) {
    std::vector<std::string> out;
    for (const Segment& s : list) out.push_back(s.id);
    return out;
}

const Segment* find(const std::vector<Segment>& list, const std::string& id) {
    const auto it = std::ranges::find(list, id, &Segment::id);
    return it == list.end() ? nullptr : &*it;
}

std::size_t countWithPrefix(const std::vector<Segment>& list, const std::string& prefix) {
    return std::size_t(std::ranges::count_if(list, [&](const Segment& s) { return s.id.starts_with(prefix); }));
}

// The point of a 440 × 440 view (radius 196) at `radius` fractions of R and `angle` radians.
constexpr QSizeF view{440, 440};
QPointF at(double radius, double angle) {
    const double r = radius * 196;
    return {220 + r * std::cos(angle), 220 + r * std::sin(angle)};
}

using SunburstLists = ChartTest;

TEST_F(SunburstLists, OverviewRunsCategoryRulesDecorationsThenGreySlice) {
    results = {rule("a", Category::xcode, {600, 200}), rule("b", Category::xcode, {1}),
               rule("c", Category::tool, {150, 49})};
    selected = {entryID("c", 1)};
    const auto list = Sunburst::overviewSegments(input());
    EXPECT_EQ(ids(list), (std::vector<std::string>{"cat:xcode", "a", "deco:/r/a/e0", "deco:/r/a/e1", "small:xcode",
                                                   "cat:tool", "c", "deco:/r/c/e0", "deco:/r/c/e1"}));

    const double xcodeEnd = top + 801.0 / 1000 * twoPi;
    EXPECT_EQ(list[0].start, top);
    EXPECT_DOUBLE_EQ(list[0].end, xcodeEnd);
    EXPECT_EQ(list[0].band, (Band{0.17, 0.31}));
    EXPECT_EQ(list[0].kind, SegmentKind::category(Category::xcode));
    EXPECT_EQ(list[0].bytes, 801);
    EXPECT_FALSE(list[0].active);
    EXPECT_EQ(list[0].hint, "点击聚焦该分类");

    EXPECT_EQ(list[1].band, (Band{0.31, 0.45}));
    EXPECT_EQ(list[1].depth, 1);
    EXPECT_EQ(list[1].hint, "点击进入");
    EXPECT_DOUBLE_EQ(list[1].end, top + 0.8 * twoPi);

    // Decorations fill the rule's arc in proportion and point at the rule.
    EXPECT_EQ(list[2].kind, SegmentKind::rule("a"));
    EXPECT_EQ(list[2].start, list[1].start);
    EXPECT_DOUBLE_EQ(list[2].end, top + 0.6 * twoPi);
    EXPECT_EQ(list[2].band, (Band{0.45, 0.92}));
    EXPECT_DOUBLE_EQ(list[3].band.outer, 0.59 + 0.33000000000000007 * std::pow(200.0 / 600, 0.6));
    EXPECT_EQ(list[3].depth, 2);
    EXPECT_EQ(list[3].title, "e1");
    EXPECT_EQ(list[3].hint, "点击进入 a");

    const Segment& grey = list[4];
    EXPECT_EQ(grey.kind, SegmentKind::category(Category::xcode));
    EXPECT_EQ(grey.hue, std::nullopt);
    EXPECT_EQ(grey.bytes, 1);
    EXPECT_EQ(grey.title, "较小项目");
    EXPECT_EQ(grey.hint, "点击聚焦该分类查看");
    EXPECT_DOUBLE_EQ(grey.start, list[1].end);
    EXPECT_DOUBLE_EQ(grey.end, xcodeEnd);

    // The selection lights the entry, its rule and its category, nothing else.
    EXPECT_TRUE(find(list, "cat:tool")->active);
    EXPECT_TRUE(find(list, "c")->active);
    EXPECT_FALSE(find(list, "deco:/r/c/e0")->active);
    EXPECT_TRUE(find(list, "deco:/r/c/e1")->active);
    EXPECT_DOUBLE_EQ(list.back().end, top + twoPi);
}

TEST_F(SunburstLists, NothingToShowGivesEmptyLists) {
    EXPECT_TRUE(Sunburst::overviewSegments(input()).empty());
    EXPECT_TRUE(Sunburst::categorySegments(input(), Category::xcode).empty());
    EXPECT_TRUE(Sunburst::entrySegments(input(), "a").empty());
    results = {rule("a", Category::xcode, {0, 0})};
    EXPECT_TRUE(Sunburst::entrySegments(input(), "a").empty());
    EXPECT_EQ(Sunburst::tap(at(0.4, 0), view, {}, input()).action, TapDecision::Action::nothing);
}

TEST_F(SunburstLists, SmallRuleThresholdIsInclusive) {
    const std::int64_t first = bytesReaching(0.025);
    struct Case {
        const char* name;
        std::int64_t bytes;
        std::vector<std::string> ids;
    };
    const Case cases[] = {
        {"the first size reaching 0.025 is shown", first, {"cat:xcode", "big", "small"}},
        {"a hair less is merged", first - 1, {"cat:xcode", "big", "small:xcode"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        results = {rule("big", Category::xcode, {circleBytes - c.bytes}), rule("small", Category::xcode, {c.bytes})};
        EXPECT_EQ(ids(Sunburst::overviewSegments(input())), c.ids);
    }
    // A category of small rules alone is one grey slice.
    results = {rule("big", Category::tool, {circleBytes - 2 * (first - 1)}), rule("x", Category::xcode, {first - 1}),
               rule("y", Category::xcode, {first - 1})};
    const auto list = Sunburst::overviewSegments(input());
    EXPECT_EQ(ids(list), (std::vector<std::string>{"cat:xcode", "small:xcode", "cat:tool", "big"}));
    EXPECT_EQ(list[1].bytes, 2 * (first - 1));
}

TEST_F(SunburstLists, DecorationsNeedAWideRuleOfSeveralEntries) {
    const std::int64_t first = bytesReaching(0.05);
    struct Case {
        const char* name;
        std::vector<std::int64_t> sizes;
        std::size_t decorations;
    };
    const Case cases[] = {
        {"one entry, however big", {first + 1000}, 0},
        {"a hair below 0.05 radians", {first / 2, first - 1 - first / 2}, 0},
        {"the first size past 0.05", {first / 2, first - first / 2}, 2},
        {"an empty first entry", {0, first + 1000}, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::int64_t size = 0;
        for (std::int64_t s : c.sizes) size += s;
        results = {rule("r", Category::xcode, c.sizes), rule("rest", Category::tool, {circleBytes - size})};
        EXPECT_EQ(countWithPrefix(Sunburst::overviewSegments(input()), "deco:/r/r/"), c.decorations);
    }
}

TEST_F(SunburstLists, DecorationsStopAtTheFirstTooThinEntry) {
    // Rule of π radians: 0.006 radians is 0.006/π of it.
    const std::vector<std::int64_t> sizes{600'000'000, 200'000'000, 1'910'000, 200'000'000};
    std::int64_t size = 0;
    for (std::int64_t s : sizes) size += s;
    results = {rule("r", Category::xcode, sizes), rule("twin", Category::tool, {size})};
    EXPECT_EQ(countWithPrefix(Sunburst::overviewSegments(input()), "deco:"), 2u);
}

TEST_F(SunburstLists, EachRouteCapsItsEntries) {
    std::vector<std::int64_t> sizes(45, 1000);
    results = {rule("r", Category::xcode, sizes)};
    EXPECT_EQ(countWithPrefix(Sunburst::overviewSegments(input()), "deco:"), 12u);
    EXPECT_EQ(find(Sunburst::overviewSegments(input()), "deco:" + entryID("r", 12)), nullptr);
    const auto category = Sunburst::categorySegments(input(), Category::xcode);
    EXPECT_EQ(countWithPrefix(category, "deco:"), 16u);
    EXPECT_EQ(find(category, "deco:" + entryID("r", 16)), nullptr);
    EXPECT_EQ(category.front().band, (Band{0.2, 0.36}));
    EXPECT_EQ(category[1].band, (Band{0.36, 0.9}));

    struct Case {
        std::size_t entries;
        std::size_t segments;
        std::optional<std::string> otherTitle;
    };
    for (const Case& c : {Case{40, 40, std::nullopt}, Case{41, 41, "其他 1 项"}, Case{45, 41, "其他 5 项"}}) {
        SCOPED_TRACE(c.entries);
        results = {rule("r", Category::xcode, std::vector<std::int64_t>(c.entries, 1000))};
        const auto list = Sunburst::entrySegments(input(), "r");
        ASSERT_EQ(list.size(), c.segments);
        const Segment* other = find(list, "other");
        EXPECT_EQ(other ? std::optional(other->title) : std::nullopt, c.otherTitle);
        if (other) {
            EXPECT_EQ(other->bytes, std::int64_t(c.entries - 40) * 1000);
            EXPECT_EQ(other->band, (Band{0.26, 0.44}));
            EXPECT_EQ(other->kind, SegmentKind::other());
            EXPECT_DOUBLE_EQ(other->end, top + twoPi);
        }
    }
}

TEST_F(SunburstLists, CategoryListSpansItsOwnCircleWithoutMerging) {
    results = {rule("a", Category::xcode, {990}), rule("tiny", Category::xcode, {10}),
               rule("other", Category::tool, {1'000'000})};
    const auto list = Sunburst::categorySegments(input(), Category::xcode);
    EXPECT_EQ(ids(list), (std::vector<std::string>{"a", "tiny"}));
    EXPECT_DOUBLE_EQ(list[0].end, top + 0.99 * twoPi);
    EXPECT_DOUBLE_EQ(list[1].end, top + twoPi);
    // The biggest rule sits at the start of the palette.
    EXPECT_DOUBLE_EQ(*list[0].hue, 0.385);
}

TEST_F(SunburstLists, EntryListOfARule) {
    results = {rule("r", Category::xcode, {500, 300, 200}),
               rule("report", Category::system, {8, 2}, SafetyLevel::reportOnly)};
    selected = {entryID("r", 1)};
    const auto list = Sunburst::entrySegments(input(), "r");
    ASSERT_EQ(list.size(), 3u);
    EXPECT_EQ(list[0].id, entryID("r", 0));
    EXPECT_EQ(list[0].kind, SegmentKind::entry("r", entryID("r", 0)));
    EXPECT_EQ(list[0].band, (Band{0.26, 0.88}));
    EXPECT_DOUBLE_EQ(list[2].band.outer, 0.44 + 0.44 * std::pow(0.4, 0.6));
    EXPECT_DOUBLE_EQ(*list[0].hue, 0.385); // the middle of the first entry at the start of the palette
    EXPECT_EQ(list[0].depth, 1);
    EXPECT_EQ(list[0].hint, "点击勾选/取消");
    EXPECT_EQ(std::vector<bool>({list[0].active, list[1].active, list[2].active}),
              std::vector<bool>({false, true, false}));
    EXPECT_EQ(Sunburst::entrySegments(input(), "report")[0].hint, std::nullopt);
}

using SunburstTaps = ChartTest;

TEST_F(SunburstTaps, HitTestFollowsRingsAnglesAndListOrder) {
    results = {rule("a", Category::xcode, {500, 100}), rule("b", Category::tool, {400})};
    const auto list = Sunburst::overviewSegments(input());
    struct Case {
        const char* name;
        QPointF point;
        std::optional<std::string> id;
    };
    const Case cases[] = {
        {"category ring", at(0.2, 0), "cat:xcode"},
        {"0.33 is the category's tolerance, before the rule ring", at(0.33, 0), "cat:xcode"},
        {"rule ring", at(0.4, 0), "a"},
        {"decoration", at(0.6, top + 0.1), "deco:/r/a/e0"},
        {"beyond a decoration's tolerance", at(0.92 + 0.04, top + 0.1), std::nullopt},
        {"the hole", at(0.1, 0), std::nullopt},
        {"up-left of the top belongs to the end of the circle", at(0.2, -2.5), "cat:tool"},
        {"straight up opens the circle", at(0.2, top), "cat:xcode"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Segment* hit = Sunburst::hitTest(c.point, view, list);
        EXPECT_EQ(hit ? std::optional(hit->id) : std::nullopt, c.id);
    }
    EXPECT_EQ(Sunburst::hitTest({10, 10}, {40, 40}, list), nullptr); // no radius left
}

TEST_F(SunburstTaps, TapDecisionPerRouteAndSegment) {
    results = {rule("a", Category::xcode, {500, 100}), rule("gone", Category::tool, {1}),
               rule("report", Category::system, {300, 100}, SafetyLevel::reportOnly)};
    using A = TapDecision::Action;
    struct Case {
        const char* name;
        Route route;
        QPointF point;
        TapDecision decision;
    };
    const Case cases[] = {
        {"hole of the overview", Route::overview(), at(0.15, 0), {}},
        {"hole of a category", Route::category(Category::tool), at(0.17, 0),
         TapDecision::go(A::goBack, Route::overview())},
        {"hole of a rule", Route::rule("a"), at(0.21, 0), TapDecision::go(A::goBack, Route::category(Category::xcode))},
        {"hole of a vanished rule", Route::rule("vanished"), at(0.21, 0),
         TapDecision::go(A::goBack, Route::overview())},
        {"category slice", Route::overview(), at(0.2, top + 0.1),
         TapDecision::go(A::openCategory, Route::category(Category::xcode))},
        {"decoration opens the rule", Route::overview(), at(0.6, top + 0.1),
         TapDecision::go(A::openRule, Route::rule("a"))},
        {"entry toggles", Route::rule("a"), at(0.5, top + 0.1), TapDecision::toggle("a", entryID("a", 0))},
        {"entry of a report-only rule", Route::rule("report"), at(0.5, top + 0.1), {}},
        {"outside every ring", Route::overview(), at(0.99, 0), {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        route = c.route;
        const auto list = Sunburst::segments(input());
        EXPECT_EQ(Sunburst::tap(c.point, view, list, input()), c.decision);
    }
}

TEST_F(SunburstTaps, GreySliceFocusesItsCategory) {
    const std::int64_t small = bytesReaching(0.02);
    results = {rule("big", Category::tool, {circleBytes - small}), rule("x", Category::xcode, {small})};
    const auto list = Sunburst::overviewSegments(input());
    EXPECT_EQ(Sunburst::tap(at(0.4, top + 0.01), view, list, input()),
              TapDecision::go(TapDecision::Action::openCategory, Route::category(Category::xcode)));
}

using SunburstCentre = ChartTest;

TEST_F(SunburstCentre, LabelPerState) {
    results = {rule("a", Category::xcode, {4000, 1000}), rule("b", Category::tool, {2000})};
    using S = CenterLabel::Style;
    struct Case {
        const char* name;
        Route route;
        std::unordered_set<std::string> selected;
        bool busy;
        CenterLabel label;
    };
    const Case cases[] = {
        {"busy", Route::rule("a"), {}, true, {7000, false, "扫描中 3/39", S::progress}},
        {"category",
         Route::category(Category::xcode),
         {entryID("a", 0)},
         false,
         {5000, false, "Xcode 与模拟器", S::secondary}},
        {"rule without selection", Route::rule("a"), {entryID("b", 0)}, false, {5000, false, "a", S::secondary}},
        {"rule with selection", Route::rule("a"), {entryID("a", 1)}, false, {5000, true, "a", S::secondary}},
        {"vanished rule", Route::rule("gone"), {}, false, {}},
        {"overview", Route::overview(), {"/nowhere"}, false, {7000, false, "点击扇区深入", S::tertiary}},
        {"overview with selection",
         Route::overview(),
         {entryID("a", 1), entryID("b", 0)},
         false,
         {3000, true, "已选待清理 · 共 7 kB", S::secondary}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        route = c.route;
        selected = c.selected;
        ChartInput in = input();
        in.isBusy = c.busy;
        EXPECT_EQ(Sunburst::centerLabel(in), c.label);
    }
}

TEST(SunburstCentreScale, LabelShrinksToTheHoleAndNeverGrows) {
    // R = 196 in a 440 × 440 view.
    struct Case {
        const char* name;
        Route route;
        double width;
        double scale;
    };
    const Case cases[] = {
        {"unmeasured", Route::overview(), 0, 1},
        {"short", Route::overview(), 40, 1},
        {"wide, overview", Route::overview(), 100, 2 * 196 * 0.17 * 0.92 / 100},
        {"wide, category", Route::category(Category::tool), 100, 2 * 196 * 0.2 * 0.92 / 100},
        {"wide, rule", Route::rule("x"), 200, 2 * 196 * 0.26 * 0.92 / 200},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_DOUBLE_EQ(Sunburst::centerLabelScale(view, c.route, c.width), c.scale);
    }
    EXPECT_EQ(Sunburst::centerLabelScale({40, 40}, Route::overview(), 100), 0);
}

} // namespace
} // namespace lumabroom::test
