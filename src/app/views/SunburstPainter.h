#pragma once

#include "Morph.h"

#include <QImage>
#include <QPointF>
#include <QPolygonF>
#include <QRectF>

#include <optional>
#include <span>
#include <vector>

class QPainter;

namespace lumabroom::SunburstPainter {

constexpr double glowRadius = 8;
constexpr double glowOpacity = 0.5;

// The ring sector between two radii from `start` to `end` radians, clockwise on screen, as a polygon
// whose chords stray at most a tenth of a device pixel from the arcs at `scale` device pixels per point.
QPolygonF sectorPolygon(QPointF centre, double innerRadius, double outerRadius, double start, double end, double scale);

// Blurred glows kept from one frame to the next: a shape that stays emphasised, where it was and in
// the same colour, is not blurred again.
struct GlowCache {
    struct Key {
        QPointF centre;
        double innerRadius, outerRadius, start, end;
        double scale; // device pixels per point
        QRgb color;
        bool operator==(const Key&) const = default;
    };
    struct Glow {
        QRectF target;
        QImage image;
    };
    struct Entry {
        Key key;
        Glow glow;
    };
    // Beyond this the cache starts again: a frame of the busiest chart has about 120 glows.
    static constexpr std::size_t capacity = 256;
    std::vector<Entry> entries;
};

// Paints a frame's shapes around `centre`, antialiased, each emphasised one over its own glow, taken
// from `glows` when given. With a valid `area`, the shapes that cannot touch it are left out, for a
// painter clipped to it.
void paint(QPainter&, QPointF centre, std::span<const DrawnSegment>, bool light, const QRectF& area = {},
           GlowCache* glows = nullptr);

// The area that a shape's paint can touch: its outline, antialiasing and glow included.
QRectF bounds(QPointF centre, const DrawnSegment&);

// Where two frames of the same shapes differ, so that only that area needs painting again; nothing
// when they hold different shapes (another list, or a shape that came or went).
std::optional<QRectF> changedArea(QPointF centre, std::span<const DrawnSegment> before,
                                  std::span<const DrawnSegment> after);

// Three box passes of half-width `radius` pixels on each axis, which come close to a Gaussian;
// `image` must be premultiplied ARGB32.
void boxBlur(QImage& image, int radius);

} // namespace lumabroom::SunburstPainter
