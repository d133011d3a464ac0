#pragma once

#include <QColor>
#include <QPalette>

#include <array>
#include <string>
#include <string_view>

class QApplication;

// The window's stand-ins for the shared look: plain palette colours until the themed pieces take
// their place. Each call site of the look goes through one function here.
namespace lumabroom::WindowLook {

enum class Appearance { system, dark, light };
inline constexpr std::array allAppearances{Appearance::system, Appearance::dark, Appearance::light};

std::string_view rawValue(Appearance);
std::string displayName(Appearance);
// The stored "appearanceMode"; dark when absent or unknown.
Appearance storedAppearance();
void storeAppearance(Appearance);

// Whether the window draws in its light scheme under `appearance`.
bool isLight(Appearance, const QPalette& systemPalette);
// The application's palette for a scheme.
QPalette palette(bool light);

// Colours of the few marks that stand out.
QColor accent(bool light);
QColor success(bool light);
QColor tertiaryText(const QPalette&);
QColor cardBackground(bool light);

} // namespace lumabroom::WindowLook
