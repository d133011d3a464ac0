#pragma once

#include "Segment.h"
#include "model/VisibleGroup.h"

#include <QColor>

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace lumabroom {

// How positions on the circle become colours: the hue stops from green through red to purple, or
// a sequential palette that colour-blind eyes can still tell apart.
enum class ChartPalette { hues, colorBlindSafe };

std::string_view rawValue(ChartPalette); // "hues", "colorBlindSafe"

namespace SunburstPalette {

// The stored choice under "chartPalette"; anything but "colorBlindSafe" is `hues`.
ChartPalette stored();
// False if the setting could not be written.
bool store(ChartPalette);

// The colour value of a segment from its angles; `offset` decides what stands at the start of the
// palette. For `hues` a hue in [0, 1); for `colorBlindSafe` the position itself in [0, 1).
double positionHue(double start, double end, double offset, ChartPalette = ChartPalette::hues);

// The offset that puts the middle of the biggest rule of the whole at the start of the palette; the
// first of equal rules wins.
double dominantHueOffset(std::span<const VisibleGroup> groups, std::int64_t total);

// The colour of a category's overview slice, teal when there is none.
QColor categoryColor(Category, std::span<const VisibleGroup> groups, bool light, ChartPalette = ChartPalette::hues);

// Byte totals that the groups would give, computed here so the chart needs no model code.
std::int64_t groupTotal(const VisibleGroup&);
std::int64_t groupsTotal(std::span<const VisibleGroup>);

} // namespace SunburstPalette

namespace SunburstDraw {

QColor fillColor(const Segment&, bool hovered, bool light, ChartPalette = ChartPalette::hues);

// Close to the background, so notches read as cuts.
QColor notchColor(bool light);

} // namespace SunburstDraw

} // namespace lumabroom
