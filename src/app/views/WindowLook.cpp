#include "WindowLook.h"


namespace lumabroom::WindowLook {

QPalette palette(bool light) {
    QPalette p;
    const auto set = [&p](QPalette::ColorRole role, QColor colour) { p.setColor(role, colour); };
    if (light) {
        set(QPalette::Window, QColor(0xEE, 0xF2, 0xF8));
        set(QPalette::WindowText, QColor(0x1C, 0x1C, 0x1E));
        set(QPalette::Base, QColor(0xFF, 0xFF, 0xFF));
        set(QPalette::AlternateBase, QColor(0xF2, 0xF2, 0xF7));
        set(QPalette::Text, QColor(0x1C, 0x1C, 0x1E));
        set(QPalette::Button, QColor(0xFF, 0xFF, 0xFF));
        set(QPalette::ButtonText, QColor(0x1C, 0x1C, 0x1E));
        set(QPalette::PlaceholderText, QColor(0x3C, 0x3C, 0x43, 0x99));
        set(QPalette::ToolTipBase, QColor(0xFF, 0xFF, 0xFF));
        set(QPalette::ToolTipText, QColor(0x1C, 0x1C, 0x1E));
    } else {
        set(QPalette::Window, QColor(0x1E, 0x1E, 0x21));
        set(QPalette::WindowText, QColor(0xF2, 0xF2, 0xF7));
        set(QPalette::Base, QColor(0x2A, 0x2A, 0x2E));
        set(QPalette::AlternateBase, QColor(0x32, 0x32, 0x36));
        set(QPalette::Text, QColor(0xF2, 0xF2, 0xF7));
        set(QPalette::Button, QColor(0x32, 0x32, 0x36));
        set(QPalette::ButtonText, QColor(0xF2, 0xF2, 0xF7));
        set(QPalette::PlaceholderText, QColor(0xEB, 0xEB, 0xF5, 0x99));
        set(QPalette::ToolTipBase, QColor(0x2A, 0x2A, 0x2E));
        set(QPalette::ToolTipText, QColor(0xF2, 0xF2, 0xF7));
    }
    set(QPalette::Highlight, accent(light));
    set(QPalette::HighlightedText, QColor(Qt::white));
    p.setColor(QPalette::Disabled, QPalette::ButtonText, light ? QColor(0x8E, 0x8E, 0x93) : QColor(0x8E, 0x8E, 0x93));
    p.setColor(QPalette::Disabled, QPalette::WindowText, QColor(0x8E, 0x8E, 0x93));
    return p;
}

QColor accent(bool light) { return light ? QColor(0x0F, 0x9D, 0x94) : QColor(0x2D, 0xD4, 0xBF); }
QColor success(bool light) { return light ? QColor(0x1E, 0x9E, 0x4A) : QColor(0x34, 0xC7, 0x59); }

QColor tertiaryText(const QPalette& p) {
    QColor c = p.color(QPalette::WindowText);
    c.setAlphaF(0.45f);
    return c;
}

QColor cardBackground(bool light) { return light ? QColor(0, 0, 0, 14) : QColor(255, 255, 255, 18); }

} // namespace lumabroom::WindowLook
