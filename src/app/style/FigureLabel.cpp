#include "FigureLabel.h"

#include "AnimatedBytes.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace lumabroom {

FigureLabel::FigureLabel(TextSize size, Tone tone, QWidget* parent) : QWidget(parent), tone_(tone) {
    setFont(textFont(size));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void FigureLabel::setText(const QString& text) {
    if (text == text_) {
        return;
    }
    text_ = text;
    setAccessibleName(text);
    updateGeometry();
    update();
}

QSize FigureLabel::sizeHint() const {
    const QFontMetricsF metrics(font());
    return {int(std::ceil(AnimatedBytes::cellEdges(text_, metrics).back())), int(std::ceil(metrics.height()))};
}

void FigureLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(toneColor(tone_, Theme::of(*this)));
    const QFontMetricsF metrics(font());
    AnimatedBytes::paintText(painter, QPointF(0, (height() - metrics.height()) / 2 + metrics.ascent()), font(), {},
                             text_, 1);
}

} // namespace lumabroom
