#include "SafetyBadge.h"

#include "text/Localization.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace lumabroom {

namespace {
constexpr double kPadX = 5;
constexpr double kPadY = 1.5;
} // namespace

SafetyBadge::SafetyBadge(SafetyLevel safety, QWidget* parent) : QWidget(parent), safety_(safety) {
    setFont(textFont(TextSize::caption2));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName(text());
}

QColor SafetyBadge::color(SafetyLevel safety, const Theme& theme) {
    switch (safety) {
    case SafetyLevel::safe: return theme.named(NamedColor::green);
    case SafetyLevel::caution: return theme.named(NamedColor::orange);
    case SafetyLevel::reportOnly: return theme.named(NamedColor::gray);
    }
    return theme.named(NamedColor::gray);
}

QString SafetyBadge::text() const { return QString::fromStdString(displayName(safety_)); }

QSize SafetyBadge::sizeHint() const {
    const QFontMetricsF metrics(font());
    return {int(std::ceil(metrics.horizontalAdvance(text()) + 2 * kPadX)),
            int(std::ceil(metrics.height() + 2 * kPadY))};
}

void SafetyBadge::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange || event->type() == QEvent::FontChange) {
        setAccessibleName(text());
        updateGeometry();
    }
    QWidget::changeEvent(event);
}

void SafetyBadge::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor tint = color(safety_, Theme::of(*this));
    QColor fill = tint;
    fill.setAlphaF(0.18f);
    const QRectF capsule = QRectF(rect());
    QPainterPath path;
    path.addRoundedRect(capsule, capsule.height() / 2, capsule.height() / 2);
    painter.fillPath(path, fill);
    painter.setPen(tint);
    painter.drawText(capsule, Qt::AlignCenter, text());
}

} // namespace lumabroom
