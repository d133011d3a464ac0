#pragma once

#include <QColor>
#include <QString>

#include <cstdint>
#include <string>
#include <string_view>

class QHBoxLayout;
class QLabel;
class QPushButton;
class QWidget;

namespace lumabroom {

// Small pieces the window's parts build from, so that they look and behave alike.
namespace ViewParts {

// The application text of `key` in the current language.
QString text(std::string_view key);
QString qs(const std::string& s);
QString bytes(std::int64_t count);
// A button's text shows "&" only doubled; single, it marks a mnemonic ("Xcode & Simulators").
QString buttonText(QString text);
// A colour as a style sheet writes it.
QString rgba(QColor c);

// A label that lets a press through to the row button it sits in.
QLabel* label(const QString& content, QWidget* parent);
// A symbol in a colour of the scheme the view was built for; it does not depend on the palette
// that reaches it through the style sheet.
QLabel* symbolLabel(std::string_view symbol, const QColor& colour, int side, QWidget* parent);
// An icon-only round button; its tooltip is its accessible name.
QPushButton* roundButton(std::string_view symbol, const QColor& colour, const QString& tip, QWidget* parent);
// Makes `button` a row of the list, one button across; its pieces go into the layout returned.
QHBoxLayout* makeRow(QPushButton& button, const QString& name);

// Applies the style sheet again after a property it selects on has changed.
void repolish(QWidget& widget);

} // namespace ViewParts
} // namespace lumabroom
