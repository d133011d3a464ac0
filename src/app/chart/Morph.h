#pragma once

#include "Segment.h"
#include "SunburstPalette.h"

#include <QColor>

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace lumabroom {

// One shape of a frame, ready to paint: angles with the gap already taken off, radii in points.
struct DrawnSegment {
    std::string id;
    double start = 0; // radians
    double end = 0;
    double innerRadius = 0;
    double outerRadius = 0;
    double alpha = 1;
    QColor color;
    bool emphasised = false; // glows beneath, and stands out by a few points
    std::vector<double> notchRadii;

    bool operator==(const DrawnSegment&) const = default;
};

struct MorphInput {
    std::span<const Segment> from; // the list of the route that was left
    std::span<const Segment> to;   // the list to show
    double progress = 1;           // may overshoot under the spring
    std::optional<std::string> hoverID;
    bool light = false;
    ChartPalette palette = ChartPalette::hues;
};

namespace Morph {

// The shapes to paint, bottom first, for a chart of `radius` points: what exists in both lists
// travels, what is new unfolds from its middle, what goes away folds into its middle and fades.
std::vector<DrawnSegment> frame(const MorphInput&, double radius);

// The key under which a segment of one list meets its counterpart in the other: a decoration
// becomes the entry of the same path.
std::string_view key(const Segment&);

} // namespace Morph

} // namespace lumabroom
