#include "BrandMark.h"

#include <QPainter>
#include <QPainterPath>
#include <QPainterPathStroker>

namespace lumabroom {

namespace {

struct Mote {
    double x, y, diameter, opacity; // fractions of the mark's size, from its centre
};
constexpr Mote kMotes[] = {
    {0.355, -0.277, 0.085, 0.95},
    {0.468, -0.249, 0.06, 0.6},
    {0.36, -0.429, 0.045, 0.42},
};

// The ring starts at three o'clock and runs clockwise; 0.111 of it is cut at the start, and the
// whole is turned 55 degrees back, so the gap opens towards the motes.
constexpr double kTrimStart = 0.111;
constexpr double kTurnDegrees = -55;

} // namespace

BrandMark::BrandMark(int size, QWidget* parent) : QWidget(parent), size_(size) {
    setFixedSize(size, size);
    setAttribute(Qt::WA_TranslucentBackground);
}

void BrandMark::paint(QPainter& painter, const QRectF& square, const Theme& theme) {
    const double size = square.width();
    const QPointF centre = square.center();
    const double diameter = size * 0.64;
    const QRectF circle(centre - QPointF(diameter / 2, diameter / 2), QSizeF(diameter, diameter));

    // Qt's angles run counter-clockwise: a clockwise start of s degrees is -s.
    const double startClockwise = kTurnDegrees + kTrimStart * 360;
    QPainterPath arc;
    arc.arcMoveTo(circle, -startClockwise);
    arc.arcTo(circle, -startClockwise, -(1 - kTrimStart) * 360);
    QPainterPathStroker stroker;
    stroker.setWidth(size * 0.17);
    stroker.setCapStyle(Qt::FlatCap);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QLinearGradient accent = theme.accentGradient(square);
    painter.fillPath(stroker.createStroke(arc), accent);
    for (const Mote& mote : kMotes) {
        const double d = mote.diameter * size;
        const QPointF at = centre + QPointF(mote.x * size, mote.y * size);
        QPainterPath dot;
        dot.addEllipse(at, d / 2, d / 2);
        painter.setOpacity(mote.opacity);
        painter.fillPath(dot, accent);
    }
    painter.restore();
}

void BrandMark::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paint(painter, QRectF(0, 0, size_, size_), Theme::of(*this));
}

} // namespace lumabroom
