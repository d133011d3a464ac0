#include "SymbolView.h"

#include "Symbols.h"

#include <QFontMetrics>
#include <QPainter>

namespace lumabroom {

SymbolView::SymbolView(std::string symbol, TextSize size, Tone tone, QWidget* parent)
    : QWidget(parent),
      symbol_(std::move(symbol)),
      tone_(tone),
      side_(QFontMetrics(textFont(size)).ascent()) {
    setFixedSize(side_, side_);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

QColor toneColor(SymbolView::Tone tone, const Theme& theme) {
    switch (tone) {
    case SymbolView::Tone::primary: return theme.primary;
    case SymbolView::Tone::secondary: return theme.secondary;
    case SymbolView::Tone::tertiary: return theme.tertiary;
    }
    return theme.primary;
}

void SymbolView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Symbols::paint(painter, QRectF(rect()), symbol_, toneColor(tone_, Theme::of(*this)));
}

} // namespace lumabroom
