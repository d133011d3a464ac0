#pragma once

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QSizeF>
#include <QString>

#include <optional>
#include <span>
#include <string_view>

class QPainter;
class QSvgRenderer;
class QRectF;

// The symbols the views name (the toolkit's system image names), drawn from the vendored icon set.
namespace lumabroom::Symbols {

struct Entry {
    std::string_view name;
    std::string_view file; // below ":/icons"
};

// Every symbol the views use, one picture each.
std::span<const Entry> table();

// The embedded file of a symbol; nothing for a name the table lacks.
std::optional<QString> file(std::string_view name);

// Draws the symbol fitted into `rect`, in one colour; false (and nothing drawn) for an unknown name.
bool paint(QPainter&, const QRectF& rect, std::string_view name, const QColor&);
// For buttons and menus: the symbol in one colour; an unknown name gives an empty icon.
QIcon icon(std::string_view name, const QColor&);

// Renders an embedded SVG fitted into `size` device-independent pixels and fills what it covers
// with `color`; a null image if the file is missing or not a picture.
QImage tinted(const QString& file, QSizeF size, qreal devicePixelRatio, const QColor& color);
QImage tinted(QSvgRenderer&, QSizeF size, qreal devicePixelRatio, const QColor& color);

} // namespace lumabroom::Symbols
