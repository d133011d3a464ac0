#include "Morph.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace lumabroom {

namespace {

constexpr double thinnest = 0.0008;      // radians; nothing narrower is drawn
constexpr double settledProgress = 0.98; // highlights wait until the morph has nearly landed
constexpr double vanishing = 0.03;       // what folds or unfolds is not drawn closer than this to nothing
constexpr double growthPoints = 4;
constexpr double largestGap = 0.01;
constexpr double notchStep = 0.14;
constexpr double notchedBand = 0.15;
constexpr double notchMargin = 0.03;

struct Placement {
    double start;
    double end;
    Band band;
    double alpha;
};

void draw(std::vector<DrawnSegment>& out, const Segment& segment, const Placement& at, const MorphInput& input,
          double p, double radius) {
    const double span = at.end - at.start;
    if (!(span > thinnest)) return;
    const bool settled = p > settledProgress;
    const bool hovered = settled && input.hoverID && *input.hoverID == segment.id;
    const bool emphasised = settled && (hovered || segment.active);
    const double gap = std::min(span * 0.25, largestGap);
    const double a1 = at.start + gap;
    const double a2 = at.end - gap;

    DrawnSegment shape{.id = segment.id,
                       .start = a1,
                       .end = a2,
                       .innerRadius = radius * at.band.inner,
                       .outerRadius = radius * at.band.outer + (emphasised ? growthPoints : 0),
                       .alpha = at.alpha,
                       .color = SunburstDraw::fillColor(segment, hovered, input.light, input.palette),
                       .emphasised = emphasised,
                       .notchRadii = {}};
    if (segment.depth == 2 && at.band.outer - at.band.inner > notchedBand) {
        for (double v = at.band.inner + notchStep; v < at.band.outer - notchMargin; v += notchStep)
            shape.notchRadii.push_back(radius * v);
    }
    out.push_back(std::move(shape));
}

double lerp(double a, double b, double t) { return a + t * (b - a); }

} // namespace

namespace Morph {

std::string_view key(const Segment& segment) {
    std::string_view id = segment.id;
    if (id.starts_with("deco:")) id.remove_prefix(5);
    return id;
}

std::vector<DrawnSegment> frame(const MorphInput& input, double radius) {
    const double p = std::clamp(input.progress, 0.0, 1.0);
    std::vector<DrawnSegment> out;
    out.reserve(input.to.size() + (p < 1 ? input.from.size() : 0));

    if (p >= 1 || input.from.empty()) {
        for (const Segment& s : input.to) draw(out, s, {s.start, s.end, s.band, 1}, input, p, radius);
        return out;
    }

    std::unordered_map<std::string_view, const Segment*> fromByKey;
    fromByKey.reserve(input.from.size());
    for (const Segment& s : input.from) fromByKey.try_emplace(key(s), &s);
    std::unordered_set<std::string_view> toKeys;
    toKeys.reserve(input.to.size());
    for (const Segment& s : input.to) toKeys.insert(key(s));

    if (1 - p > vanishing) {
        for (const Segment& s : input.from) {
            if (toKeys.contains(key(s))) continue;
            const double m = (s.start + s.end) / 2;
            draw(out, s, {s.start + p * (m - s.start), s.end + p * (m - s.end), s.band, 1 - p}, input, p, radius);
        }
    }
    for (const Segment& s : input.to) {
        if (const auto it = fromByKey.find(key(s)); it != fromByKey.end()) {
            const Segment& f = *it->second;
            draw(out, s,
                 {lerp(f.start, s.start, p),
                  lerp(f.end, s.end, p),
                  {lerp(f.band.inner, s.band.inner, p), lerp(f.band.outer, s.band.outer, p)},
                  1},
                 input, p, radius);
        } else if (p > vanishing) {
            const double m = (s.start + s.end) / 2;
            draw(out, s, {m + p * (s.start - m), m + p * (s.end - m), s.band, p}, input, p, radius);
        }
    }
    return out;
}

} // namespace Morph

} // namespace lumabroom
