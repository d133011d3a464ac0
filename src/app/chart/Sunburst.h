#pragma once

#include "ChartInput.h"
#include "Segment.h"

#include <QPointF>
#include <QSizeF>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace lumabroom {

// What a tap asks the owner to do; the chart itself changes nothing.
struct TapDecision {
    enum class Action { nothing, goBack, openCategory, openRule, toggleEntry };
    Action action = Action::nothing;
    // Where to go for goBack, openCategory and openRule.
    Route route = Route::overview();
    // The entry to toggle, for toggleEntry.
    std::string ruleID;
    std::string entryID;

    static TapDecision go(Action action, Route route) { return {action, std::move(route), {}, {}}; }
    static TapDecision toggle(std::string ruleID, std::string entryID) {
        return {Action::toggleEntry, Route::overview(), std::move(ruleID), std::move(entryID)};
    }

    bool operator==(const TapDecision&) const = default;
};

// The two lines in the chart's hole.
struct CenterLabel {
    enum class Style { secondary, tertiary, progress };
    std::optional<std::int64_t> bytes; // the big number, if any
    bool gradient = false;             // the big number is drawn in the accent
    std::string secondLine;
    Style style = Style::secondary;

    bool operator==(const CenterLabel&) const = default;
};

namespace Sunburst {

// Radius of the chart in a view of `size`: min(width, height) / 2 − 24.
double radius(QSizeF size);

std::vector<Segment> overviewSegments(const ChartInput&);
std::vector<Segment> categorySegments(const ChartInput&, Category);
std::vector<Segment> entrySegments(const ChartInput&, const std::string& ruleID);
// The list of `route`, or of the input's own route.
std::vector<Segment> segments(const ChartInput&, const Route& route);
inline std::vector<Segment> segments(const ChartInput& input) { return segments(input, input.route); }

// The first segment of the list under `point`, a ring counting 0.03 of the radius beyond its outer edge.
const Segment* hitTest(QPointF point, QSizeF size, std::span<const Segment> segments);

// A tap in the hole steps back; elsewhere it acts on the segment hit, if any.
TapDecision tap(QPointF point, QSizeF size, std::span<const Segment> segments, const ChartInput&);
// One level up from the input's route; nothing on the overview.
TapDecision back(const ChartInput&);
// What choosing this segment does.
TapDecision activate(const Segment&, const ChartInput&);

CenterLabel centerLabel(const ChartInput&);
// Keeps a label of `naturalWidth` inside the hole of the route; never above 1.
double centerLabelScale(QSizeF size, const Route&, double naturalWidth);

const RuleScanResult* result(const ChartInput&, const std::string& ruleID);

} // namespace Sunburst

} // namespace lumabroom
