#include "SunburstPainter.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace lumabroom::SunburstPainter {

namespace {

constexpr double notchWidth = 2;
// Points of arc at the outer edge below which a shape counts as a thin spike.
constexpr double thinShape = 12;
// Largest distance in device pixels between an arc and the chord that stands for it.
constexpr double arcTolerance = 0.1;
// The glow is soft, so it is drawn at a quarter of the resolution and scaled up: sixteen times fewer
// pixels to blur.
constexpr double glowScale = 0.25;

// One pass of a running-sum box filter along `count` pixels `stride` apart, clamped at the edges.
void blurLine(std::uint32_t* line, int count, int stride, int radius, std::vector<std::uint32_t>& copy) {
    copy.resize(count);
    for (int i = 0; i < count; ++i) copy[i] = line[i * stride];
    const int window = 2 * radius + 1;
    std::uint32_t sum[4] = {0, 0, 0, 0};
    const auto add = [&](std::uint32_t pixel, int sign) {
        for (int c = 0; c < 4; ++c) sum[c] += sign * int((pixel >> (8 * c)) & 0xff);
    };
    const auto at = [&](int i) { return copy[std::clamp(i, 0, count - 1)]; };
    for (int i = -radius; i <= radius; ++i) add(at(i), 1);
    for (int i = 0; i < count; ++i) {
        std::uint32_t pixel = 0;
        for (int c = 0; c < 4; ++c) pixel |= ((sum[c] + window / 2) / window) << (8 * c);
        line[i * stride] = pixel;
        add(at(i + radius + 1), 1);
        add(at(i - radius), -1);
    }
}

GlowCache::Glow blurredGlow(const QPolygonF& shape, const QColor& color) {
    const double margin = 3 * glowRadius;
    const QRectF area = shape.boundingRect().adjusted(-margin, -margin, margin, margin);
    QImage glow(QSize(int(std::ceil(area.width() * glowScale)), int(std::ceil(area.height() * glowScale))),
                QImage::Format_ARGB32_Premultiplied);
    glow.fill(Qt::transparent);
    {
        QPainter p(&glow);
        p.setRenderHint(QPainter::Antialiasing);
        p.scale(glowScale, glowScale);
        p.translate(-area.topLeft());
        p.setPen(Qt::NoPen);
        p.setBrush(color);
        p.drawPolygon(shape);
    }
    boxBlur(glow, int(std::lround(glowRadius * glowScale)));
    return {QRectF(area.topLeft(), QSizeF(glow.width() / glowScale, glow.height() / glowScale)), std::move(glow)};
}

void paintGlow(QPainter& painter, const GlowCache::Glow& glow) {
    painter.save();
    painter.setOpacity(glowOpacity);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(glow.target, glow.image);
    painter.restore();
}

// A fading shape takes its alpha in its colours: the same as the painter's opacity for one fill,
// and several times faster in the raster engine.
QColor faded(QColor color, double alpha) {
    color.setAlphaF(float(color.alphaF() * alpha));
    return color;
}

const GlowCache::Glow& cachedGlow(GlowCache& glows, const GlowCache::Key& key, const QPolygonF& polygon,
                                  const QColor& color) {
    auto it = std::ranges::find(glows.entries, key, &GlowCache::Entry::key);
    if (it == glows.entries.end()) {
        if (glows.entries.size() >= GlowCache::capacity) glows.entries.clear();
        glows.entries.push_back({key, blurredGlow(polygon, color)});
        it = glows.entries.end() - 1;
    }
    return it->glow;
}

// Antialiased filling costs per scanline and edge, which long thin spikes have most of: a hard-edged
// fill under a one-pixel antialiased outline looks the same for half the time. A spike that fades in
// or out moves too fast for its edges to show, and blending a translucent outline costs more than the
// fill, so it goes without. Expects the painter antialiased, with no pen and `color` as its brush.
void paintSpike(QPainter& painter, const QPolygonF& polygon, const QColor& color, bool outlined) {
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.drawPolygon(polygon);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!outlined) return;
    QPen outline(color, 0);
    outline.setCosmetic(true);
    painter.setPen(outline);
    painter.setBrush(Qt::NoBrush);
    painter.drawPolygon(polygon);
    painter.setPen(Qt::NoPen);
}

// Appends the arc of `radius` from `start` to `end`, as many chords as keep it within the tolerance at
// `scale` device pixels per point.
void appendArc(QPolygonF& polygon, QPointF centre, double radius, double start, double end, double scale) {
    const double devicePixels = radius * scale;
    const double step = devicePixels > arcTolerance ? 2 * std::acos(1 - arcTolerance / devicePixels) : std::numbers::pi;
    const int chords = std::max(1, int(std::ceil(std::abs(end - start) / step)));
    for (int i = 0; i <= chords; ++i) {
        const double angle = start + (end - start) * i / chords;
        polygon.append(centre + QPointF(radius * std::cos(angle), radius * std::sin(angle)));
    }
}

// A pixel beyond the polygon for the outline and the antialiasing; a glow reaches its blur's margin,
// rounded up to whole pixels of its reduced image.
QRectF reach(const QPolygonF& polygon, bool emphasised) {
    const double margin = emphasised ? 3 * glowRadius + 1 / glowScale + 1 : 1;
    return polygon.boundingRect().adjusted(-margin, -margin, margin, margin);
}

} // namespace

QPolygonF sectorPolygon(QPointF centre, double innerRadius, double outerRadius, double start, double end,
                        double scale) {
    QPolygonF polygon;
    appendArc(polygon, centre, outerRadius, start, end, scale);
    appendArc(polygon, centre, innerRadius, end, start, scale);
    return polygon;
}

void boxBlur(QImage& image, int radius) {
    if (radius < 1 || image.isNull()) return;
    const int width = image.width();
    const int height = image.height();
    const int stride = int(image.bytesPerLine() / 4);
    auto* pixels = reinterpret_cast<std::uint32_t*>(image.bits());
    std::vector<std::uint32_t> copy;
    for (int pass = 0; pass < 3; ++pass) {
        for (int y = 0; y < height; ++y) blurLine(pixels + y * stride, width, 1, radius, copy);
        for (int x = 0; x < width; ++x) blurLine(pixels + x, height, stride, radius, copy);
    }
}

QRectF bounds(QPointF centre, const DrawnSegment& shape) {
    return reach(sectorPolygon(centre, shape.innerRadius, shape.outerRadius, shape.start, shape.end, 1),
                 shape.emphasised);
}

std::optional<QRectF> changedArea(QPointF centre, std::span<const DrawnSegment> before,
                                  std::span<const DrawnSegment> after) {
    if (before.size() != after.size()) return std::nullopt;
    QRectF area;
    for (std::size_t i = 0; i < after.size(); ++i) {
        if (before[i] == after[i]) continue;
        if (before[i].id != after[i].id) return std::nullopt;
        area |= bounds(centre, before[i]) | bounds(centre, after[i]);
    }
    return area;
}

void paint(QPainter& painter, QPointF centre, std::span<const DrawnSegment> shapes, bool light, const QRectF& area,
           GlowCache* glows) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double scale = painter.deviceTransform().m11();
    for (const DrawnSegment& shape : shapes) {
        // A fading sliver under a device pixel wide comes out of the hard-edged fill below as a broken
        // line, on one frame of a fold: hundreds of them cost a third of a morph frame.
        const double devicePixels = (shape.end - shape.start) * shape.outerRadius * scale;
        if (shape.alpha < 1 && devicePixels < 1) continue;
        const QPolygonF polygon =
            sectorPolygon(centre, shape.innerRadius, shape.outerRadius, shape.start, shape.end, scale);
        if (area.isValid() && !area.intersects(reach(polygon, shape.emphasised))) continue;
        if (shape.emphasised) {
            if (!glows) paintGlow(painter, blurredGlow(polygon, shape.color));
            else
                paintGlow(painter, cachedGlow(*glows,
                                              {centre, shape.innerRadius, shape.outerRadius, shape.start, shape.end,
                                               scale, shape.color.rgba()},
                                              polygon, shape.color));
        }
        const QColor color = faded(shape.color, shape.alpha);
        painter.setBrush(color);
        if (devicePixels < thinShape * scale) paintSpike(painter, polygon, color, shape.alpha >= 1);
        else painter.drawPolygon(polygon);
        if (!shape.notchRadii.empty()) {
            // Thin ring sectors rather than strokes: the same pixels without the stroker. Gathering
            // them across shapes into one fill was measured slower: the rasterizer's pool overflows.
            painter.setBrush(faded(SunburstDraw::notchColor(light), shape.alpha));
            for (double r : shape.notchRadii)
                painter.drawPolygon(
                    sectorPolygon(centre, r - notchWidth / 2, r + notchWidth / 2, shape.start, shape.end, scale));
        }
    }
    painter.restore();
}

} // namespace lumabroom::SunburstPainter
