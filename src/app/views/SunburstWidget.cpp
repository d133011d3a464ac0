#include "SunburstWidget.h"

#include "Morph.h"
#include "SunburstPainter.h"
#include "text/Formatting.h"
#include "text/Localization.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPaintEngine>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace lumabroom {

namespace {

constexpr Spring morphSpring{0.55, 0.85};
constexpr double lineSpacing = 3;
constexpr double tooltipHalfWidth = 100;
constexpr double tooltipLift = 36;
constexpr double tooltipPadding = 8;

// The accent of the shared look, start and end, for the big number of a selection.
QColor accentStart(bool light) { return light ? QColor::fromRgbF(0, 0.52f, 0.6f) : QColor(64, 200, 224); }
QColor accentEnd(bool light) { return light ? QColor::fromRgbF(0, 0.63f, 0.47f) : QColor(99, 230, 226); }

QColor ink(bool light, double opacity) {
    QColor c = light ? QColor::fromRgbF(0.08f, 0.08f, 0.1f) : QColor(Qt::white);
    c.setAlphaF(float(opacity));
    return c;
}

QFont scaledFont(const QFont& base, double pointSize, QFont::Weight weight) {
    QFont f = base;
    f.setPointSizeF(pointSize);
    f.setWeight(weight);
    return f;
}

QPointF middle(const Segment& s, QPointF centre, double radius) {
    const double angle = (s.start + s.end) / 2;
    const double r = radius * (s.band.inner + s.band.outer) / 2;
    return centre + QPointF(r * std::cos(angle), r * std::sin(angle));
}

} // namespace

SunburstWidget::SunburstWidget(QWidget* parent) : QWidget(parent), spring(morphSpring, this) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(QString::fromStdString(Localization::text("磁盘占用图")));
    setAccessibleDescription(QString::fromStdString(Localization::text("点击扇区深入")));
    connect(&spring, &SpringAnimation::valueChanged, this, [this](double value) {
        progress = value;
        update();
    });
}

void SunburstWidget::setProvider(Provider p) {
    provider = std::move(p);
    shownRoute.reset();
    refresh();
}

void SunburstWidget::setLight(bool light) {
    forcedLight = light;
    update();
}

bool SunburstWidget::isLight() const {
    return forcedLight.value_or(palette().color(QPalette::Window).lightnessF() > 0.5);
}

QSize SunburstWidget::sizeHint() const { return {520, 520}; }
QSize SunburstWidget::minimumSizeHint() const { return {200, 200}; }

ChartInput SunburstWidget::input() const { return provider ? provider() : ChartInput{}; }

void SunburstWidget::refresh() {
    const ChartInput now = input();
    if (shownRoute && *shownRoute != now.route) {
        // The list of the route left, from the data as it is now.
        morphFrom = Sunburst::segments(now, *shownRoute);
        spring.animate(0, 1);
    }
    shownRoute = now.route;
    // The pointer has not moved, but what lies under it may have.
    if (hoverID) hover(hoverLocation, Sunburst::segments(now));
    update();
}

void SunburstWidget::hover(QPointF location, const std::vector<Segment>& list) {
    hoverLocation = location;
    const Segment* hit = Sunburst::hitTest(location, size(), list);
    std::optional<std::string> id = hit ? std::optional(hit->id) : std::nullopt;
    if (id != hoverID) {
        hoverID = std::move(id);
        update();
    } else if (hoverID) {
        update(); // the tooltip follows the pointer
    }
}

void SunburstWidget::mouseMoveEvent(QMouseEvent* event) { hover(event->position(), Sunburst::segments(input())); }

void SunburstWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    const ChartInput now = input();
    const auto list = Sunburst::segments(now);
    const TapDecision decision = Sunburst::tap(event->position(), size(), list, now);
    if (decision.action != TapDecision::Action::nothing) Q_EMIT tapped(decision);
}

void SunburstWidget::leaveEvent(QEvent*) {
    if (hoverID) {
        hoverID.reset();
        update();
    }
}

void SunburstWidget::focusOutEvent(QFocusEvent*) { leaveEvent(nullptr); }

void SunburstWidget::moveKeyboardFocus(int step) {
    const ChartInput now = input();
    const auto list = Sunburst::segments(now);
    if (list.empty()) return;
    const auto it = hoverID ? std::ranges::find(list, *hoverID, &Segment::id) : list.end();
    const int count = int(list.size());
    const int index =
        it == list.end() ? (step > 0 ? 0 : count - 1) : ((int(it - list.begin()) + step) % count + count) % count;
    const Segment& chosen = list[std::size_t(index)];
    hoverID = chosen.id;
    hoverLocation = middle(chosen, rect().center(), Sunburst::radius(size()));
    setAccessibleDescription(QString::fromStdString(chosen.title + " " + Formatting::bytes(chosen.bytes)));
    update();
}

void SunburstWidget::keyPressEvent(QKeyEvent* event) {
    const ChartInput now = input();
    switch (event->key()) {
    case Qt::Key_Escape:
        if (const TapDecision d = Sunburst::back(now); d.action != TapDecision::Action::nothing) Q_EMIT tapped(d);
        return;
    case Qt::Key_Right:
    case Qt::Key_Down: moveKeyboardFocus(1); return;
    case Qt::Key_Left:
    case Qt::Key_Up: moveKeyboardFocus(-1); return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space: {
        const auto list = Sunburst::segments(now);
        const auto it = hoverID ? std::ranges::find(list, *hoverID, &Segment::id) : list.end();
        if (it == list.end()) break;
        if (const TapDecision d = Sunburst::activate(*it, now); d.action != TapDecision::Action::nothing)
            Q_EMIT tapped(d);
        return;
    }
    default: break;
    }
    QWidget::keyPressEvent(event);
}

void SunburstWidget::paintEvent(QPaintEvent*) {
    const ChartInput now = input();
    const auto list = Sunburst::segments(now);
    const bool light = isLight();
    const double radius = Sunburst::radius(size());
    const auto shapes = Morph::frame({.from = morphFrom,
                                      .to = list,
                                      .progress = progress,
                                      .hoverID = hoverID,
                                      .light = light,
                                      .palette = now.palette},
                                     radius);
    QPainter painter(this);
    const QPointF centre = QRectF(rect()).center();
    if (progress < 1 && !morphFrom.empty()) {
        SunburstPainter::paint(painter, centre, shapes, light);
    } else {
        // The target's own ratio: the screen's backing store, or the image of a render() call.
        const qreal ratio = painter.paintEngine()->paintDevice()->devicePixelRatioF();
        if (settled.image.isNull() || settled.size != size() || settled.ratio != ratio || settled.light != light) {
            QImage image(size() * ratio, QImage::Format_ARGB32_Premultiplied);
            image.setDevicePixelRatio(ratio);
            image.fill(Qt::transparent);
            QPainter layer(&image);
            SunburstPainter::paint(layer, centre, shapes, light, {}, &glows);
            layer.end();
            settled = {shapes, size(), ratio, light, std::move(image)};
        } else if (settled.shapes != shapes) {
            // A change of hover or selection touches a few shapes: only where they lie is painted again,
            // over whole device pixels so that the rest of the picture stays as it was.
            const auto changed = SunburstPainter::changedArea(centre, settled.shapes, shapes);
            const QRectF device = changed ? QRectF(changed->topLeft() * ratio, changed->size() * ratio).toAlignedRect()
                                          : QRectF(settled.image.rect());
            const QRectF area(device.topLeft() / ratio, device.size() / ratio);
            QPainter layer(&settled.image);
            layer.setCompositionMode(QPainter::CompositionMode_Source);
            layer.fillRect(area, Qt::transparent);
            layer.setCompositionMode(QPainter::CompositionMode_SourceOver);
            layer.setClipRect(area);
            SunburstPainter::paint(layer, centre, shapes, light, area, &glows);
            settled.shapes = shapes;
        }
        painter.drawImage(QPointF(0, 0), settled.image);
    }
    paintCenterLabel(painter, now);
    if (hoverID) {
        if (const auto it = std::ranges::find(list, *hoverID, &Segment::id); it != list.end())
            paintTooltip(painter, *it);
    }
}

void SunburstWidget::paintCenterLabel(QPainter& painter, const ChartInput& now) {
    const CenterLabel label = Sunburst::centerLabel(now);
    const bool light = isLight();
    const QFont bigFont = scaledFont(font(), 22, QFont::Bold);
    const QFont smallFont = scaledFont(font(), 11, QFont::Normal);
    const QString big = label.bytes ? QString::fromStdString(Formatting::bytes(*label.bytes)) : QString();
    const QString second = QString::fromStdString(label.secondLine);
    const QFontMetricsF bigMetrics(bigFont);
    const QFontMetricsF smallMetrics(smallFont);
    const double bigHeight = big.isEmpty() ? 0 : bigMetrics.height();
    const double secondHeight = second.isEmpty() ? 0 : smallMetrics.height();
    const double width = std::max(bigMetrics.horizontalAdvance(big), smallMetrics.horizontalAdvance(second));
    const double height = bigHeight + secondHeight + (bigHeight > 0 && secondHeight > 0 ? lineSpacing : 0);
    if (height <= 0) return;
    const double scale = Sunburst::centerLabelScale(size(), now.route, width);

    painter.save();
    painter.translate(QRectF(rect()).center());
    painter.scale(scale, scale);
    QRectF bigRect(-width / 2, -height / 2, width, bigHeight);
    if (!big.isEmpty()) {
        painter.setFont(bigFont);
        if (label.gradient) {
            QLinearGradient accent(bigRect.topLeft(), bigRect.topRight());
            accent.setColorAt(0, accentStart(light));
            accent.setColorAt(1, accentEnd(light));
            painter.setPen(QPen(QBrush(accent), 1));
        } else {
            painter.setPen(ink(light, 1));
        }
        painter.drawText(bigRect, Qt::AlignCenter, big);
    }
    if (!second.isEmpty()) {
        painter.setFont(smallFont);
        painter.setPen(ink(light, label.style == CenterLabel::Style::tertiary ? 0.4 : 0.6));
        painter.drawText(QRectF(-width / 2, height / 2 - secondHeight, width, secondHeight), Qt::AlignCenter, second);
    }
    painter.restore();
}

void SunburstWidget::paintTooltip(QPainter& painter, const Segment& segment) {
    const bool light = isLight();
    const QFont titleFont = scaledFont(font(), 11, QFont::Medium);
    const QFont bytesFont = scaledFont(font(), 10, QFont::Normal);
    const QFont hintFont = scaledFont(font(), 9, QFont::Normal);
    struct Line {
        QString text;
        QFont font;
        double opacity;
    };
    std::vector<Line> lines{{QString::fromStdString(segment.title), titleFont, 1},
                            {QString::fromStdString(Formatting::bytes(segment.bytes)), bytesFont, 0.6}};
    if (segment.hint) lines.push_back({QString::fromStdString(*segment.hint), hintFont, 0.4});
    double width = 0;
    double height = 0;
    for (const Line& line : lines) {
        const QFontMetricsF metrics(line.font);
        width = std::max(width, metrics.horizontalAdvance(line.text));
        height += metrics.height();
    }
    width += 2 * tooltipPadding;
    height += 2 * tooltipPadding;
    const double x = std::min(double(this->width()) - tooltipHalfWidth, std::max(hoverLocation.x(), tooltipHalfWidth));
    const double y = std::max(hoverLocation.y() - tooltipLift, 24.0);
    const QRectF box(x - width / 2, y - height / 2, width, height);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor material = light ? QColor(250, 250, 252) : QColor(44, 44, 48);
    material.setAlphaF(0.92f);
    painter.setPen(QPen(ink(light, 0.1), 1));
    painter.setBrush(material);
    painter.drawRoundedRect(box, 8, 8);
    double top = box.top() + tooltipPadding;
    for (const Line& line : lines) {
        const double lineHeight = QFontMetricsF(line.font).height();
        painter.setFont(line.font);
        painter.setPen(ink(light, line.opacity));
        painter.drawText(QRectF(box.left() + tooltipPadding, top, width - 2 * tooltipPadding, lineHeight),
                         Qt::AlignLeft | Qt::AlignVCenter, line.text);
        top += lineHeight;
    }
    painter.restore();
}

} // namespace lumabroom
