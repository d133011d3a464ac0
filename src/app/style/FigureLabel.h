#pragma once

#include "SymbolView.h"
#include "Theme.h"

#include <QWidget>

namespace lumabroom {

// A one-line text whose digits take equal widths, in one of the theme's text colours.
class FigureLabel : public QWidget {
    Q_OBJECT

public:
    using Tone = SymbolView::Tone;

    FigureLabel(TextSize, Tone, QWidget* parent = nullptr);

    void setText(const QString& text);
    QString text() const { return text_; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QString text_;
    Tone tone_;
};

} // namespace lumabroom
