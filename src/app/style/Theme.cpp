#include "Theme.h"

#include <QGuiApplication>
#include <QWidget>

namespace lumabroom {

namespace {

QColor rgbF(double r, double g, double b) { return QColor::fromRgbF(float(r), float(g), float(b)); }
QColor white(double alpha) { return QColor::fromRgbF(1, 1, 1, float(alpha)); }
QColor black(double alpha) { return QColor::fromRgbF(0, 0, 0, float(alpha)); }

Theme makeLight() {
    Theme t;
    t.dark = false;
    t.bgTop = rgbF(0.94, 0.96, 0.985);
    t.bgBottom = rgbF(0.86, 0.895, 0.95);
    t.card = white(0.6);
    t.cardStroke = black(0.09);
    t.disabledPill = black(0.08);
    t.badgeFill = black(0.06);
    t.rowHover = black(0.035);
    t.barUsed = black(0.28);
    t.barFree = black(0.07);
    t.accentA = rgbF(0.0, 0.52, 0.6);
    t.accentB = rgbF(0.0, 0.63, 0.47);
    t.onAccent = Qt::white;
    t.primary = black(0.85);
    t.secondary = black(0.5);
    t.tertiary = black(0.26);
    return t;
}

Theme makeDark() {
    Theme t;
    t.dark = true;
    t.bgTop = rgbF(0.137, 0.137, 0.149);
    t.bgBottom = rgbF(0.086, 0.086, 0.094);
    t.card = white(0.055);
    t.cardStroke = white(0.08);
    t.disabledPill = white(0.1);
    t.badgeFill = white(0.08);
    t.rowHover = white(0.04);
    t.barUsed = white(0.14);
    t.barFree = white(0.05);
    t.accentA = QColor(64, 200, 224);
    t.accentB = QColor(99, 230, 226);
    t.onAccent = Qt::black;
    t.primary = white(0.9);
    t.secondary = white(0.55);
    t.tertiary = white(0.25);
    return t;
}

} // namespace

const Theme& Theme::of(bool dark) {
    static const Theme light = makeLight();
    static const Theme darkTheme = makeDark();
    return dark ? darkTheme : light;
}

QFont textFont(TextSize size, QFont::Weight weight) {
    QFont font = QGuiApplication::font();
    const double body = font.pointSizeF() > 0 ? font.pointSizeF() : 10.0;
    double scale = 1.0;
    switch (size) {
    case TextSize::caption2: scale = 10.0 / 13; break;
    case TextSize::caption: scale = 10.0 / 13; break;
    case TextSize::subheadline: scale = 11.0 / 13; break;
    case TextSize::callout: scale = 12.0 / 13; break;
    case TextSize::body: scale = 1.0; break;
    case TextSize::title: scale = 22.0 / 13; break;
    }
    font.setPointSizeF(body * scale);
    font.setWeight(weight);
    return font;
}

const Theme& Theme::of(const QWidget& widget) { return of(isDark(widget.palette())); }

bool Theme::isDark(const QPalette& palette) { return palette.color(QPalette::Window).lightnessF() < 0.5f; }

QColor Theme::named(NamedColor color) const {
    struct Pair {
        QColor light, dark;
    };
    const auto pick = [this](Pair p) { return dark ? p.dark : p.light; };
    switch (color) {
    case NamedColor::blue: return pick({QColor(0, 122, 255), QColor(10, 132, 255)});
    case NamedColor::indigo: return pick({QColor(88, 86, 214), QColor(94, 92, 230)});
    case NamedColor::brown: return pick({QColor(162, 132, 94), QColor(172, 142, 104)});
    case NamedColor::cyan: return pick({QColor(50, 173, 230), QColor(100, 210, 255)});
    case NamedColor::teal: return pick({QColor(48, 176, 199), QColor(64, 200, 224)});
    case NamedColor::green: return pick({QColor(52, 199, 89), QColor(48, 209, 88)});
    case NamedColor::gray: return pick({QColor(142, 142, 147), QColor(152, 152, 157)});
    case NamedColor::orange: return pick({QColor(255, 149, 0), QColor(255, 159, 10)});
    case NamedColor::red: return pick({QColor(255, 59, 48), QColor(255, 69, 58)});
    case NamedColor::yellow: return pick({QColor(255, 204, 0), QColor(255, 214, 10)});
    case NamedColor::pink: return pick({QColor(255, 45, 85), QColor(255, 55, 95)});
    case NamedColor::purple: return pick({QColor(175, 82, 222), QColor(191, 90, 242)});
    case NamedColor::mint: return pick({QColor(0, 199, 190), QColor(99, 230, 226)});
    }
    return primary;
}

QLinearGradient Theme::accentGradient(const QRectF& rect) const {
    const bool rightToLeft = QGuiApplication::layoutDirection() == Qt::RightToLeft;
    QLinearGradient gradient(rightToLeft ? rect.topRight() : rect.topLeft(),
                             rightToLeft ? rect.topLeft() : rect.topRight());
    gradient.setColorAt(0, accentA);
    gradient.setColorAt(1, accentB);
    return gradient;
}

QPalette Theme::palette() const {
    const QColor window = bgTop;
    const QColor text = primary.toRgb();
    QPalette p(window);
    const QColor base = dark ? QColor(44, 44, 48) : QColor(Qt::white);
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, base.darker(dark ? 90 : 104));
    p.setColor(QPalette::Button, dark ? QColor(58, 58, 62) : QColor(236, 238, 242));
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::ToolTipBase, base);
    p.setColor(QPalette::ToolTipText, text);
    p.setColor(QPalette::PlaceholderText, secondary);
    p.setColor(QPalette::Highlight, accentA);
    p.setColor(QPalette::HighlightedText, onAccent);
    p.setColor(QPalette::Disabled, QPalette::WindowText, tertiary);
    p.setColor(QPalette::Disabled, QPalette::Text, tertiary);
    p.setColor(QPalette::Disabled, QPalette::ButtonText, tertiary);
    return p;
}

} // namespace lumabroom
