#include "WindowLook.h"

#include "host/Settings.h"
#include "model/AppText.h"

namespace lumabroom::WindowLook {

std::string_view rawValue(Appearance appearance) {
    switch (appearance) {
    case Appearance::system: return "system";
    case Appearance::dark: return "dark";
    case Appearance::light: return "light";
    }
    return "dark";
}

std::string displayName(Appearance appearance) {
    switch (appearance) {
    case Appearance::system: return AppText::text("跟随系统");
    case Appearance::dark: return AppText::text("深色");
    case Appearance::light: return AppText::text("浅色");
    }
    return {};
}

Appearance storedAppearance() {
    const auto stored = Settings::string("appearanceMode");
    for (const Appearance appearance : allAppearances)
        if (stored && *stored == rawValue(appearance)) return appearance;
    return Appearance::dark;
}

void storeAppearance(Appearance appearance) { Settings::setString("appearanceMode", rawValue(appearance)); }

bool isLight(Appearance appearance, const QPalette& systemPalette) {
    switch (appearance) {
    case Appearance::dark: return false;
    case Appearance::light: return true;
    case Appearance::system: return systemPalette.color(QPalette::Window).lightnessF() > 0.5;
    }
    return false;
}

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
