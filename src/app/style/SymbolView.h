#pragma once

#include "Theme.h"

#include <QWidget>

#include <string>

namespace lumabroom {

// A symbol drawn in one of the theme's colours of the moment, square, at the height of a text size.
class SymbolView : public QWidget {
public:
    enum class Tone { primary, secondary, tertiary };

    SymbolView(std::string symbol, TextSize, Tone, QWidget* parent = nullptr);

    QSize sizeHint() const override { return {side_, side_}; }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    std::string symbol_;
    Tone tone_;
    int side_;
};

// The colour of a tone in a theme.
QColor toneColor(SymbolView::Tone, const Theme&);

} // namespace lumabroom
