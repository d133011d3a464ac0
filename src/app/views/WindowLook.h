#pragma once

#include <QColor>
#include <QPalette>

// The window's stand-ins for the shared look: plain palette colours until the themed pieces take
// their place. Each call site of the look goes through one function here.
namespace lumabroom::WindowLook {

// The window's palette for a scheme.
QPalette palette(bool light);

// Colours of the few marks that stand out.
QColor accent(bool light);
QColor success(bool light);
QColor tertiaryText(const QPalette&);
QColor cardBackground(bool light);

} // namespace lumabroom::WindowLook
