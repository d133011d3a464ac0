#pragma once

#include <QColor>
#include <QFont>
#include <QLinearGradient>
#include <QPalette>
#include <QRectF>

class QWidget;

namespace lumabroom {

// The toolkit's named colours that rule styles and badges use, each with a light and a dark value.
enum class NamedColor { blue, indigo, brown, cyan, teal, green, gray, orange, red, yellow, pink, purple, mint };

// Text sizes by role, relative to the application's font, which is the body size.
enum class TextSize { caption2, caption, subheadline, callout, body, title };
QFont textFont(TextSize, QFont::Weight = QFont::Normal);

// The colours the views share, for one scheme.
struct Theme {
    QColor bgTop, bgBottom;
    QColor card, cardStroke, disabledPill, badgeFill, rowHover;
    QColor barUsed, barFree;
    QColor accentA, accentB, onAccent;
    QColor primary, secondary, tertiary; // text
    bool dark = true;

    static const Theme& of(bool dark);
    // The scheme a widget is drawn in, read from its palette: the window sets `palette()` of the
    // scheme it shows, and every widget below follows.
    static const Theme& of(const QWidget&);
    static bool isDark(const QPalette&);

    QColor named(NamedColor) const;
    // From accentA at the leading edge of `rect` to accentB at its trailing edge.
    QLinearGradient accentGradient(const QRectF& rect) const;
    // The standard widgets' palette in this scheme, for controls the views do not draw themselves.
    QPalette palette() const;
};

} // namespace lumabroom
