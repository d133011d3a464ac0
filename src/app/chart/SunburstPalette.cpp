#include "SunburstPalette.h"

#include "host/Settings.h"

#include <array>
#include <cmath>
#include <numbers>

namespace lumabroom {

namespace {

constexpr std::string_view settingKey = "chartPalette";
constexpr double twoPi = 2 * std::numbers::pi;

struct Stop {
    double at;
    double value;
};
// Green at the start, through yellow and red, to purple; negative hues wrap round.
constexpr std::array<Stop, 8> hueStops{
    {{0, 0.385}, {0.25, 0.23}, {0.38, 0.13}, {0.5, 0.02}, {0.62, -0.08}, {0.75, -0.2}, {0.88, -0.32}, {1, -0.415}}};

struct RgbStop {
    double at;
    double r, g, b;
};
// Viridis, sampled every eighth.
constexpr std::array<RgbStop, 9> viridisStops{{{0, 0.267, 0.005, 0.329},
                                               {0.125, 0.278, 0.176, 0.482},
                                               {0.25, 0.231, 0.322, 0.545},
                                               {0.375, 0.173, 0.447, 0.557},
                                               {0.5, 0.129, 0.569, 0.549},
                                               {0.625, 0.157, 0.682, 0.502},
                                               {0.75, 0.369, 0.788, 0.384},
                                               {0.875, 0.678, 0.863, 0.188},
                                               {1, 0.992, 0.906, 0.145}}};

double wrapUnit(double x) { return std::fmod(std::fmod(x, 1.0) + 1.0, 1.0); }

double interpolateHue(double u) {
    for (std::size_t i = 1; i < hueStops.size(); ++i) {
        if (u <= hueStops[i].at) {
            const Stop& a = hueStops[i - 1];
            const Stop& b = hueStops[i];
            return a.value + (u - a.at) / (b.at - a.at) * (b.value - a.value);
        }
    }
    return hueStops.back().value;
}

QColor viridis(double t) {
    for (std::size_t i = 1; i < viridisStops.size(); ++i) {
        if (t <= viridisStops[i].at) {
            const RgbStop& a = viridisStops[i - 1];
            const RgbStop& b = viridisStops[i];
            const double f = (t - a.at) / (b.at - a.at);
            return QColor::fromRgbF(float(a.r + f * (b.r - a.r)), float(a.g + f * (b.g - a.g)),
                                    float(a.b + f * (b.b - a.b)));
        }
    }
    const RgbStop& last = viridisStops.back();
    return QColor::fromRgbF(float(last.r), float(last.g), float(last.b));
}

QColor mix(const QColor& a, const QColor& b, double towardB) {
    const auto blend = [&](float x, float y) { return float(x + towardB * (y - x)); };
    return QColor::fromRgbF(blend(a.redF(), b.redF()), blend(a.greenF(), b.greenF()), blend(a.blueF(), b.blueF()));
}

struct Shade {
    double saturation;
    double brightness;
};

// The first fitting row of the state table.
Shade shade(const Segment& segment, bool hovered, bool light) {
    if (segment.active) return light ? Shade{0.85, 0.72} : Shade{0.78, 1};
    if (hovered) return light ? Shade{0.72, 0.8} : Shade{0.62, 1};
    switch (segment.depth) {
    case 0: return light ? Shade{0.6, 0.8} : Shade{0.52, 0.94};
    case 1: return light ? Shade{0.52, 0.84} : Shade{0.46, 0.97};
    default: return light ? Shade{0.46, 0.88} : Shade{0.4, 1};
    }
}

// How far the colour-blind palette fades a state towards the background; the order of the states
// follows the saturation of the hue table.
double fade(const Segment& segment, bool hovered) {
    if (segment.active) return 0;
    if (hovered) return 0.08;
    return segment.depth == 0 ? 0.22 : segment.depth == 1 ? 0.3 : 0.38;
}

QColor paletteColor(double value, bool light, const Shade& s, ChartPalette palette) {
    if (palette == ChartPalette::hues) return QColor::fromHsvF(float(value), float(s.saturation), float(s.brightness));
    // The darkest violet vanishes on the dark background and the palest yellow on the light one.
    return viridis(light ? 0.9 * value : 0.12 + 0.88 * value);
}

} // namespace

std::string_view rawValue(ChartPalette palette) {
    return palette == ChartPalette::colorBlindSafe ? "colorBlindSafe" : "hues";
}

namespace SunburstPalette {

ChartPalette stored() {
    const auto raw = Settings::string(settingKey);
    return raw && *raw == rawValue(ChartPalette::colorBlindSafe) ? ChartPalette::colorBlindSafe : ChartPalette::hues;
}

bool store(ChartPalette palette) { return Settings::setString(settingKey, rawValue(palette)); }

double positionHue(double start, double end, double offset, ChartPalette palette) {
    const double x = ((start + end) / 2 + std::numbers::pi / 2) / twoPi - offset;
    const double u = wrapUnit(x);
    return palette == ChartPalette::hues ? wrapUnit(interpolateHue(u)) : u;
}

std::int64_t groupTotal(const VisibleGroup& group) {
    std::int64_t total = 0;
    for (const RuleScanResult* result : group.results) total += result->totalSize();
    return total;
}

std::int64_t groupsTotal(std::span<const VisibleGroup> groups) {
    std::int64_t total = 0;
    for (const VisibleGroup& group : groups) total += groupTotal(group);
    return total;
}

double dominantHueOffset(std::span<const VisibleGroup> groups, std::int64_t total) {
    if (groups.empty() || total <= 0) return 0;
    double offset = 0;
    std::int64_t biggest = -1;
    double groupStart = -std::numbers::pi / 2;
    for (const VisibleGroup& group : groups) {
        double ruleStart = groupStart;
        for (const RuleScanResult* result : group.results) {
            const std::int64_t size = result->totalSize();
            const double span = double(size) / double(total) * twoPi;
            if (size > biggest) {
                biggest = size;
                offset = (ruleStart + span / 2 + std::numbers::pi / 2) / twoPi;
            }
            ruleStart += span;
        }
        groupStart += double(groupTotal(group)) / double(total) * twoPi;
    }
    return offset;
}

QColor categoryColor(Category category, std::span<const VisibleGroup> groups, bool light, ChartPalette palette) {
    const QColor teal = QColor::fromRgbF(0.19f, 0.69f, 0.78f);
    const std::int64_t total = groupsTotal(groups);
    if (total < 1) return teal;
    const double offset = dominantHueOffset(groups, total);
    double start = -std::numbers::pi / 2;
    for (const VisibleGroup& group : groups) {
        const double end = start + double(groupTotal(group)) / double(total) * twoPi;
        if (group.category == category) {
            // The slice's own colour: depth 0, neither active nor hovered.
            Segment slice;
            slice.hue = positionHue(start, end, offset, palette);
            return SunburstDraw::fillColor(slice, false, light, palette);
        }
        start = end;
    }
    return teal;
}

} // namespace SunburstPalette

namespace SunburstDraw {

QColor fillColor(const Segment& segment, bool hovered, bool light, ChartPalette palette) {
    if (!segment.hue) {
        const float white = light ? (hovered ? 0.55f : 0.68f) : (hovered ? 0.62f : 0.42f);
        return QColor::fromRgbF(white, white, white);
    }
    const QColor base = paletteColor(*segment.hue, light, shade(segment, hovered, light), palette);
    if (palette == ChartPalette::hues) return base;
    return mix(base, notchColor(light), fade(segment, hovered));
}

QColor notchColor(bool light) {
    return light ? QColor::fromRgbF(0.91f, 0.93f, 0.96f) : QColor::fromRgbF(0.1f, 0.1f, 0.11f);
}

} // namespace SunburstDraw

} // namespace lumabroom
