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
// The glow is soft, so it is drawn at a quarter of the resolution and scaled up: sixteen times fewer
// pixels to blur.
constexpr double glowScale = 0.25;

// Qt's arcs count degrees counter-clockwise with y up; ours count radians clockwise with y down.
double qtDegrees(double radians) { return -radians * 180 / std::numbers::pi; }

QRectF circle(QPointF centre, double radius) {
    return {centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius};
}

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

void paintGlow(QPainter& painter, const QPainterPath& shape, const QColor& color) {
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
        p.fillPath(shape, color);
    }
    boxBlur(glow, int(std::lround(glowRadius * glowScale)));
    painter.save();
    painter.setOpacity(glowOpacity);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRectF(area.topLeft(), QSizeF(glow.width() / glowScale, glow.height() / glowScale)), glow);
    painter.restore();
}

} // namespace

QPainterPath sectorPath(QPointF centre, double innerRadius, double outerRadius, double start, double end) {
    const double sweep = qtDegrees(end) - qtDegrees(start);
    QPainterPath path;
    path.arcMoveTo(circle(centre, outerRadius), qtDegrees(start));
    path.arcTo(circle(centre, outerRadius), qtDegrees(start), sweep);
    path.arcTo(circle(centre, innerRadius), qtDegrees(end), -sweep);
    path.closeSubpath();
    return path;
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

void paint(QPainter& painter, QPointF centre, std::span<const DrawnSegment> shapes, bool light) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    // A fading shape takes its alpha in its colours: the same as the painter's opacity for one fill,
    // and several times faster in the raster engine.
    const auto faded = [](QColor color, double alpha) {
        color.setAlphaF(float(color.alphaF() * alpha));
        return color;
    };
    for (const DrawnSegment& shape : shapes) {
        const QPainterPath path = sectorPath(centre, shape.innerRadius, shape.outerRadius, shape.start, shape.end);
        if (shape.emphasised) paintGlow(painter, path, shape.color);
        const QColor color = faded(shape.color, shape.alpha);
        if ((shape.end - shape.start) * shape.outerRadius < thinShape) {
            // Antialiased filling costs per scanline and edge, which long thin spikes have most of:
            // a hard-edged fill under a one-pixel antialiased outline looks the same for a third of the
            // time. A spike that fades in or out moves too fast for its edges to show, and blending a
            // translucent outline costs more than the fill, so it goes without.
            painter.setRenderHint(QPainter::Antialiasing, false);
            painter.fillPath(path, color);
            painter.setRenderHint(QPainter::Antialiasing);
            if (shape.alpha >= 1) {
                QPen outline(color, 0);
                outline.setCosmetic(true);
                painter.strokePath(path, outline);
            }
        } else {
            painter.fillPath(path, color);
        }
        if (!shape.notchRadii.empty()) {
            // Thin ring sectors rather than strokes: the same pixels without the stroker.
            QPainterPath notches;
            for (double r : shape.notchRadii)
                notches.addPath(sectorPath(centre, r - notchWidth / 2, r + notchWidth / 2, shape.start, shape.end));
            painter.fillPath(notches, faded(SunburstDraw::notchColor(light), shape.alpha));
        }
    }
    painter.restore();
}

} // namespace lumabroom::SunburstPainter
