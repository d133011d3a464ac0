#pragma once

#include "Morph.h"

#include <QPointF>
#include <QPolygonF>

#include <span>

class QPainter;
class QImage;

namespace lumabroom::SunburstPainter {

constexpr double glowRadius = 8;
constexpr double glowOpacity = 0.5;

// The ring sector between two radii from `start` to `end` radians, clockwise on screen, as a polygon
// whose chords stray at most a tenth of a device pixel from the arcs at `scale` device pixels per point.
QPolygonF sectorPolygon(QPointF centre, double innerRadius, double outerRadius, double start, double end, double scale);

// Paints a frame's shapes around `centre`, antialiased, each emphasised one over its own glow.
void paint(QPainter&, QPointF centre, std::span<const DrawnSegment>, bool light);

// Three box passes of half-width `radius` pixels on each axis, which come close to a Gaussian;
// `image` must be premultiplied ARGB32.
void boxBlur(QImage& image, int radius);

} // namespace lumabroom::SunburstPainter
