#include "RuleIconTile.h"

#include "BrandIcon.h"
#include "RuleStyle.h"
#include "Symbols.h"

#include <QPainter>
#include <QPainterPath>

namespace lumabroom {

RuleIconTile::RuleIconTile(CleanRule rule, int size, QWidget* parent)
    : QWidget(parent),
      rule_(std::move(rule)),
      size_(size) {
    setFixedSize(size, size);
    setAttribute(Qt::WA_TranslucentBackground);
}

void RuleIconTile::paint(QPainter& painter, const QRectF& square, const CleanRule& rule, const Theme& theme) {
    if (const auto logo = BrandIcon::image(rule.id, square.size(), painter.device()->devicePixelRatioF(), theme)) {
        painter.save();
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(square.topLeft(), *logo);
        painter.restore();
        return;
    }
    paintFallback(painter, square, RuleStyle::of(rule).symbol);
}

void RuleIconTile::paintFallback(QPainter& painter, const QRectF& square, std::string_view symbol) {
    const QColor blue = Theme::of(false).named(NamedColor::blue);
    const double size = square.width();
    QLinearGradient fill(square.topLeft(), square.bottomLeft());
    fill.setColorAt(0, blue.lighter(125));
    fill.setColorAt(1, blue);
    QPainterPath tile;
    tile.addRoundedRect(square, size * 0.26, size * 0.26);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(tile, fill);
    const double glyph = size * 0.5;
    Symbols::paint(painter, QRectF(square.center() - QPointF(glyph / 2, glyph / 2), QSizeF(glyph, glyph)), symbol,
                   Qt::white);
    painter.restore();
}

void RuleIconTile::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paint(painter, QRectF(0, 0, size_, size_), rule_, Theme::of(*this));
}

} // namespace lumabroom
