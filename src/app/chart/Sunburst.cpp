#include "Sunburst.h"

#include "model/AppText.h"
#include "model/DisplayName.h"
#include "text/Formatting.h"
#include "text/Localization.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace lumabroom {

namespace {

constexpr double pi = std::numbers::pi;
constexpr double top = -pi / 2;
constexpr double twoPi = 2 * pi;

// A rule narrower than this joins its category's grey slice in the overview.
constexpr double smallRuleSpan = 0.025;
// Decorations only around a rule wider than this, and none narrower than the second.
constexpr double decoratedRuleSpan = 0.05;
constexpr double smallestDecoration = 0.006;
constexpr double hitTolerance = 0.03;
constexpr std::size_t entryLimit = 40;

// How the decorations of a route stand out from their rule.
struct DecorationRing {
    std::size_t limit;
    double inner;
    double outerBase;
    double outerGrowth;
};
constexpr DecorationRing overviewDecorations{12, 0.45, 0.59, 0.33000000000000007}; // 0.92 − 0.59 in doubles
constexpr DecorationRing categoryDecorations{16, 0.36, 0.5, 0.4};

constexpr Band categoryRing{0.17, 0.31};
constexpr Band overviewRuleRing{0.31, 0.45};
constexpr Band categoryRuleRing{0.2, 0.36};
constexpr Band entryRing{0.26, 0.44};
constexpr double entryGrowth = 0.44;

// How long an entry's spike is against the rule's first entry: the largest reaches the full length
// and smaller ones fall off gently.
double growth(std::int64_t size, std::int64_t firstSize) { return std::pow(double(size) / double(firstSize), 0.6); }

struct Builder {
    const ChartInput& input;
    double offset;
    std::vector<Segment> list;

    double hue(double start, double end) const {
        return SunburstPalette::positionHue(start, end, offset, input.palette);
    }

    bool anySelected(const RuleScanResult& result) const {
        if (!input.isSelected) return false;
        return std::ranges::any_of(result.entries, [&](const ScanEntry& e) { return input.isSelected(e.id()); });
    }

    void addRule(const RuleScanResult& result, double start, double span, Band band) {
        list.push_back(Segment{.id = result.id(),
                               .kind = SegmentKind::rule(result.id()),
                               .start = start,
                               .end = start + span,
                               .band = band,
                               .hue = hue(start, start + span),
                               .depth = 1,
                               .title = result.rule.name(),
                               .bytes = result.totalSize(),
                               .active = anySelected(result),
                               .hint = AppText::text("点击进入")});
    }

    void addDecorations(const RuleScanResult& result, double start, double span, const DecorationRing& ring) {
        const std::int64_t size = result.totalSize();
        if (result.entries.size() < 2 || span <= decoratedRuleSpan || size < 1 || result.entries.front().size < 1)
            return;
        const std::int64_t firstSize = result.entries.front().size;
        const std::string hint = AppText::formatted("点击进入 %1", {result.rule.name()});
        double cursor = start;
        const std::size_t count = std::min(ring.limit, result.entries.size());
        for (std::size_t i = 0; i < count; ++i) {
            const ScanEntry& entry = result.entries[i];
            const double entrySpan = span * (double(entry.size) / double(size));
            if (entrySpan < smallestDecoration) break;
            list.push_back(
                Segment{.id = "deco:" + entry.id(),
                        .kind = SegmentKind::rule(result.id()),
                        .start = cursor,
                        .end = cursor + entrySpan,
                        .band = {ring.inner, ring.outerBase + ring.outerGrowth * growth(entry.size, firstSize)},
                        .hue = hue(cursor, cursor + entrySpan),
                        .depth = 2,
                        .title = displayName(entry),
                        .bytes = entry.size,
                        .active = input.selected(entry.id()),
                        .hint = hint});
            cursor += entrySpan;
        }
    }
};

const VisibleGroup* findGroup(std::span<const VisibleGroup> groups, Category category) {
    const auto it = std::ranges::find(groups, category, &VisibleGroup::category);
    return it == groups.end() ? nullptr : &*it;
}

std::int64_t totalBytes(const ChartInput& input) {
    std::int64_t total = 0;
    for (const RuleScanResult& result : input.results) total += result.totalSize();
    return total;
}

std::int64_t selectedBytes(const ChartInput& input) {
    std::int64_t total = 0;
    for (const RuleScanResult& result : input.results)
        for (const ScanEntry& entry : result.entries)
            if (input.selected(entry.id())) total += entry.size;
    return total;
}

// The hole's edge: the inner edge of the route's first ring, which is also where a tap means "back".
double holeFactor(const Route& route) {
    if (route.categoryValue()) return categoryRuleRing.inner;
    if (route.ruleID()) return entryRing.inner;
    return categoryRing.inner;
}

double backFactor(const Route& route) {
    if (route.categoryValue()) return 0.18;
    if (route.ruleID()) return 0.22;
    return 0.16;
}

} // namespace

namespace Sunburst {

double radius(QSizeF size) { return std::min(size.width(), size.height()) / 2 - 24; }

const RuleScanResult* result(const ChartInput& input, const std::string& ruleID) {
    const auto it = std::ranges::find(input.results, ruleID, &RuleScanResult::id);
    return it == input.results.end() ? nullptr : &*it;
}

std::vector<Segment> overviewSegments(const ChartInput& input) {
    const std::int64_t total = SunburstPalette::groupsTotal(input.groups);
    if (total < 1) return {};
    Builder b{input, SunburstPalette::dominantHueOffset(input.groups, total), {}};
    const auto spanOf = [total](std::int64_t bytes) { return double(bytes) / double(total) * twoPi; };
    double cursor = top;
    for (const VisibleGroup& group : input.groups) {
        const std::int64_t groupBytes = SunburstPalette::groupTotal(group);
        const double end = cursor + spanOf(groupBytes);
        const std::string raw(rawValue(group.category));
        b.list.push_back(Segment{
            .id = "cat:" + raw,
            .kind = SegmentKind::category(group.category),
            .start = cursor,
            .end = end,
            .band = categoryRing,
            .hue = b.hue(cursor, end),
            .depth = 0,
            .title = displayName(group.category),
            .bytes = groupBytes,
            .active = std::ranges::any_of(group.results, [&](const RuleScanResult* r) { return b.anySelected(*r); }),
            .hint = AppText::text("点击聚焦该分类")});

        std::int64_t smallBytes = 0;
        double ruleStart = cursor;
        for (const RuleScanResult* result : group.results) {
            const double span = spanOf(result->totalSize());
            if (span < smallRuleSpan) {
                smallBytes += result->totalSize();
                continue;
            }
            b.addRule(*result, ruleStart, span, overviewRuleRing);
            b.addDecorations(*result, ruleStart, span, overviewDecorations);
            ruleStart += span;
        }
        if (smallBytes >= 1) {
            b.list.push_back(Segment{.id = "small:" + raw,
                                     .kind = SegmentKind::category(group.category),
                                     .start = ruleStart,
                                     .end = ruleStart + spanOf(smallBytes),
                                     .band = overviewRuleRing,
                                     .hue = std::nullopt,
                                     .depth = 1,
                                     .title = AppText::text("较小项目"),
                                     .bytes = smallBytes,
                                     .active = false,
                                     .hint = AppText::text("点击聚焦该分类查看")});
        }
        cursor = end;
    }
    return std::move(b.list);
}

std::vector<Segment> categorySegments(const ChartInput& input, Category category) {
    const VisibleGroup* group = findGroup(input.groups, category);
    if (!group || group->results.empty()) return {};
    const std::int64_t total = SunburstPalette::groupTotal(*group);
    if (total < 1) return {};
    Builder b{input, SunburstPalette::dominantHueOffset(std::span(group, 1), total), {}};
    double cursor = top;
    for (const RuleScanResult* result : group->results) {
        const double span = double(result->totalSize()) / double(total) * twoPi;
        b.addRule(*result, cursor, span, categoryRuleRing);
        b.addDecorations(*result, cursor, span, categoryDecorations);
        cursor += span;
    }
    return std::move(b.list);
}

std::vector<Segment> entrySegments(const ChartInput& input, const std::string& ruleID) {
    const RuleScanResult* rule = result(input, ruleID);
    if (!rule) return {};
    const std::int64_t size = rule->totalSize();
    if (size < 1) return {};
    const auto& entries = rule->entries;
    const std::int64_t firstSize = entries.empty() ? 0 : entries.front().size;
    Builder b{input, double(firstSize) / double(size) / 2, {}};
    const auto spanOf = [size](std::int64_t bytes) { return double(bytes) / double(size) * twoPi; };
    const std::optional<std::string> hint =
        rule->rule.safety == SafetyLevel::reportOnly ? std::nullopt : std::optional(AppText::text("点击勾选/取消"));
    double cursor = top;
    const std::size_t shown = std::min(entryLimit, entries.size());
    for (std::size_t i = 0; i < shown; ++i) {
        const ScanEntry& entry = entries[i];
        const double end = cursor + spanOf(entry.size);
        b.list.push_back(
            Segment{.id = entry.id(),
                    .kind = SegmentKind::entry(ruleID, entry.id()),
                    .start = cursor,
                    .end = end,
                    .band = {entryRing.inner,
                             entryRing.outer + entryGrowth * growth(entry.size, std::max<std::int64_t>(firstSize, 1))},
                    .hue = b.hue(cursor, end),
                    .depth = 1,
                    .title = displayName(entry),
                    .bytes = entry.size,
                    .active = input.selected(entry.id()),
                    .hint = hint});
        cursor = end;
    }
    std::int64_t otherBytes = 0;
    for (std::size_t i = shown; i < entries.size(); ++i) otherBytes += entries[i].size;
    if (otherBytes >= 1) {
        b.list.push_back(Segment{.id = "other",
                                 .kind = SegmentKind::other(),
                                 .start = cursor,
                                 .end = cursor + spanOf(otherBytes),
                                 .band = entryRing,
                                 .hue = std::nullopt,
                                 .depth = 1,
                                 .title = AppText::counted("其他 %n 项", std::int64_t(entries.size() - entryLimit)),
                                 .bytes = otherBytes,
                                 .active = false,
                                 .hint = std::nullopt});
    }
    return std::move(b.list);
}

std::vector<Segment> segments(const ChartInput& input, const Route& route) {
    if (const Category* category = route.categoryValue()) return categorySegments(input, *category);
    if (const std::string* ruleID = route.ruleID()) return entrySegments(input, *ruleID);
    return overviewSegments(input);
}

const Segment* hitTest(QPointF point, QSizeF size, std::span<const Segment> segments) {
    const double r = radius(size);
    if (r <= 0) return nullptr;
    const double x = point.x() - size.width() / 2;
    const double y = point.y() - size.height() / 2;
    double angle = std::atan2(y, x);
    if (angle < top) angle += twoPi;
    const double distance = std::sqrt(x * x + y * y) / r;
    for (const Segment& segment : segments) {
        if (segment.band.inner <= distance && distance <= segment.band.outer + hitTolerance && segment.start <= angle
            && angle < segment.end)
            return &segment;
    }
    return nullptr;
}

TapDecision back(const ChartInput& input) {
    if (input.route.categoryValue()) return TapDecision::go(TapDecision::Action::goBack, Route::overview());
    if (const std::string* ruleID = input.route.ruleID()) {
        const RuleScanResult* rule = result(input, *ruleID);
        return TapDecision::go(TapDecision::Action::goBack,
                               rule ? Route::category(rule->rule.category) : Route::overview());
    }
    return {};
}

TapDecision activate(const Segment& segment, const ChartInput& input) {
    if (const auto* c = std::get_if<SegmentKind::CategoryKind>(&segment.kind.value))
        return TapDecision::go(TapDecision::Action::openCategory, Route::category(c->category));
    if (const auto* r = std::get_if<SegmentKind::RuleKind>(&segment.kind.value))
        return TapDecision::go(TapDecision::Action::openRule, Route::rule(r->ruleID));
    if (const auto* e = std::get_if<SegmentKind::EntryKind>(&segment.kind.value)) {
        const RuleScanResult* rule = result(input, e->ruleID);
        if (!rule || rule->rule.safety == SafetyLevel::reportOnly) return {};
        return TapDecision::toggle(e->ruleID, e->entryID);
    }
    return {};
}

TapDecision tap(QPointF point, QSizeF size, std::span<const Segment> segments, const ChartInput& input) {
    const double dx = point.x() - size.width() / 2;
    const double dy = point.y() - size.height() / 2;
    if (std::sqrt(dx * dx + dy * dy) < radius(size) * backFactor(input.route)) return back(input);
    const Segment* hit = hitTest(point, size, segments);
    return hit ? activate(*hit, input) : TapDecision{};
}

CenterLabel centerLabel(const ChartInput& input) {
    using Style = CenterLabel::Style;
    if (input.isBusy)
        return {totalBytes(input), false, AppText::formatted("扫描中 %1", {input.scanProgressText}), Style::progress};
    if (const Category* category = input.route.categoryValue()) {
        std::int64_t bytes = 0;
        for (const RuleScanResult& r : input.results)
            if (r.rule.category == *category) bytes += r.totalSize();
        return {bytes, false, displayName(*category), Style::secondary};
    }
    if (const std::string* ruleID = input.route.ruleID()) {
        const RuleScanResult* rule = result(input, *ruleID);
        if (!rule) return {};
        const bool anySelected =
            std::ranges::any_of(rule->entries, [&](const ScanEntry& e) { return input.selected(e.id()); });
        return {rule->totalSize(), anySelected, rule->rule.name(), Style::secondary};
    }
    const std::int64_t selected = selectedBytes(input);
    if (selected < 1) return {totalBytes(input), false, AppText::text("点击扇区深入"), Style::tertiary};
    return {selected, true, AppText::formatted("已选待清理 · 共 %1", {Formatting::bytes(totalBytes(input))}),
            Style::secondary};
}

double centerLabelScale(QSizeF size, const Route& route, double naturalWidth) {
    if (naturalWidth <= 0) return 1;
    const double hole = std::max(radius(size), 0.0) * holeFactor(route);
    return std::min(2 * hole * 0.92 / naturalWidth, 1.0);
}

} // namespace Sunburst

} // namespace lumabroom
