#include "AnimatedBytes.h"

#include "Spring.h"

#include "text/Formatting.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QVariantAnimation>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace lumabroom {

namespace {
const double kSettleSeconds = Spring::standard().settlingTime();

double widestDigit(const QFontMetricsF& metrics) {
    double widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    }
    return widest;
}
} // namespace

AnimatedBytes::AnimatedBytes(QWidget* parent) : QWidget(parent), animation_(new QVariantAnimation(this)) {
    animation_->setStartValue(0.0);
    animation_->setEndValue(kSettleSeconds);
    animation_->setDuration(int(kSettleSeconds * 1000));
    connect(animation_, &QVariantAnimation::valueChanged, this, [this](const QVariant& seconds) {
        progress_ = animation_->state() == QAbstractAnimation::Running ? curve_(seconds.toDouble()) : 1.0;
        update();
    });
    connect(animation_, &QVariantAnimation::finished, this, [this] {
        progress_ = 1;
        update();
    });
    setAttribute(Qt::WA_TranslucentBackground);
    setAccessibleName(text());
}

double AnimatedBytes::standardSpring(double seconds) { return Spring::standard().value(seconds); }

void AnimatedBytes::setProgress(Progress progress, double settleSeconds) {
    curve_ = std::move(progress);
    animation_->setEndValue(settleSeconds);
    animation_->setDuration(int(settleSeconds * 1000));
}

QString AnimatedBytes::text() const { return QString::fromStdString(Formatting::bytes(bytes_)); }

void AnimatedBytes::setBytes(std::int64_t bytes) {
    if (bytes == bytes_) {
        return;
    }
    from_ = text();
    bytes_ = bytes;
    setAccessibleName(text());
    updateGeometry();
    animation_->stop();
    // A figure that nobody has seen yet has nothing to roll from.
    progress_ = isVisible() ? 0 : 1;
    if (isVisible()) {
        animation_->start();
    }
    update();
}

void AnimatedBytes::setGradient(bool gradient) {
    gradient_ = gradient;
    update();
}

QSize AnimatedBytes::sizeHint() const {
    const QFontMetricsF metrics(font());
    return {int(std::ceil(cellEdges(text(), metrics).back())), int(std::ceil(metrics.height()))};
}

std::vector<double> AnimatedBytes::cellEdges(const QString& text, const QFontMetricsF& metrics) {
    const double digit = widestDigit(metrics);
    std::vector<double> edges{0};
    for (const QChar c : text) {
        edges.push_back(edges.back() + (c.isDigit() ? digit : metrics.horizontalAdvance(c)));
    }
    return edges;
}

void AnimatedBytes::paintText(QPainter& painter, QPointF origin, const QFont& font, const QString& from,
                              const QString& to, double progress) {
    const QFontMetricsF metrics(font);
    const double lineHeight = metrics.height();
    const auto drawCells = [&](const QString& text, double lift, double opacity, const auto& drawn) {
        const std::vector<double> edges = cellEdges(text, metrics);
        painter.setOpacity(std::clamp(opacity, 0.0, 1.0));
        for (qsizetype i = 0; i < text.size(); ++i) {
            if (!drawn(i)) {
                continue;
            }
            const double cell = edges[std::size_t(i) + 1] - edges[std::size_t(i)];
            const double x = edges[std::size_t(i)] + (cell - metrics.horizontalAdvance(text[i])) / 2;
            QPainterPath glyph;
            glyph.addText(origin + QPointF(x, -lift), font, QString(text[i]));
            painter.drawPath(glyph);
        }
    };
    painter.save();
    painter.setPen(Qt::NoPen);
    if (progress >= 1 || from.isEmpty()) {
        drawCells(to, 0, 1, [](qsizetype) { return true; });
    } else {
        const auto same = [&](qsizetype i) { return from.size() == to.size() && from[i] == to[i]; };
        drawCells(to, 0, 1, same);
        drawCells(from, progress * lineHeight, 1 - progress, [&](qsizetype i) { return !same(i); });
        drawCells(to, (progress - 1) * lineHeight, progress, [&](qsizetype i) { return !same(i); });
    }
    painter.restore();
}

void AnimatedBytes::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::LanguageChange) {
        setAccessibleName(text());
        updateGeometry();
    }
    QWidget::changeEvent(event);
}

void AnimatedBytes::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(rect());
    const Theme& theme = Theme::of(*this);
    const QFontMetricsF metrics(font());
    if (gradient_) {
        painter.setBrush(theme.accentGradient(QRectF(0, 0, cellEdges(text(), metrics).back(), height())));
    } else {
        painter.setBrush(theme.primary);
    }
    const double top = (height() - metrics.height()) / 2;
    paintText(painter, QPointF(0, top + metrics.ascent()), font(), from_, text(), progress_);
}

} // namespace lumabroom
