#include "Symbols.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

#include <cmath>

namespace lumabroom::Symbols {

namespace {

// The nearest picture of the icon set for each name; filled and outlined forms share one.
constexpr Entry kTable[] = {
    {"archivebox.fill", "lucide/archive.svg"},
    {"arrow.clockwise", "lucide/refresh-cw.svg"},
    {"arrow.down.circle.fill", "lucide/circle-arrow-down.svg"},
    {"arrow.triangle.branch", "lucide/git-branch.svg"},
    {"arrow.turn.down.right", "lucide/corner-down-right.svg"},
    {"atom", "lucide/atom.svg"},
    {"book.fill", "lucide/book.svg"},
    {"checkmark.circle.fill", "lucide/circle-check.svg"},
    {"checkmark.seal.fill", "lucide/badge-check.svg"},
    {"chevron.down", "lucide/chevron-down.svg"},
    {"chevron.left", "lucide/chevron-left.svg"},
    {"chevron.right", "lucide/chevron-right.svg"},
    {"chevron.up", "lucide/chevron-up.svg"},
    {"circle", "lucide/circle.svg"},
    {"circle.dashed", "lucide/circle-dashed.svg"},
    {"circle.fill", "lucide/circle-dot.svg"},
    {"clock.arrow.circlepath", "lucide/history.svg"},
    {"cpu.fill", "lucide/cpu.svg"},
    {"doc.on.doc", "lucide/copy.svg"},
    {"ellipsis", "lucide/ellipsis.svg"},
    {"externaldrive.fill", "lucide/hard-drive.svg"},
    {"eye.fill", "lucide/eye.svg"},
    {"folder.fill", "lucide/folder.svg"},
    {"globe", "lucide/globe.svg"},
    {"hammer.fill", "lucide/hammer.svg"},
    {"info.circle", "lucide/info.svg"},
    {"info.circle.fill", "lucide/info.svg"},
    {"internaldrive", "lucide/hard-drive.svg"},
    {"internaldrive.fill", "lucide/hard-drive.svg"},
    {"iphone", "lucide/smartphone.svg"},
    {"iphone.gen2", "lucide/smartphone.svg"},
    {"minus.circle.fill", "lucide/circle-minus.svg"},
    {"moon.zzz.fill", "lucide/moon.svg"},
    {"mug.fill", "lucide/coffee.svg"},
    {"questionmark.folder", "lucide/file-question-mark.svg"},
    {"shippingbox.fill", "lucide/package.svg"},
    {"sparkles", "lucide/sparkles.svg"},
    {"square.stack.3d.up.fill", "lucide/layers.svg"},
    {"swift", "lucide/bird.svg"},
    {"terminal.fill", "lucide/terminal.svg"},
    {"text.bubble.fill", "lucide/message-square-text.svg"},
    {"wrench.and.screwdriver.fill", "lucide/wrench.svg"},
};

// Draws the symbol afresh at each size and state, so icons stay sharp at any scale.
class SymbolEngine : public QIconEngine {
public:
    SymbolEngine(QString file, QColor color) : file_(std::move(file)), color_(color) {}
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        QColor color = color_;
        if (mode == QIcon::Disabled) {
            color.setAlphaF(color.alphaF() * 0.35f);
        }
        const QImage image = tinted(file_, rect.size(), painter->device()->devicePixelRatioF(), color);
        painter->drawImage(rect, image);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }
    QIconEngine* clone() const override { return new SymbolEngine(file_, color_); }

private:
    QString file_;
    QColor color_;
};

} // namespace

std::span<const Entry> table() { return kTable; }

std::optional<QString> file(std::string_view name) {
    for (const Entry& entry : kTable) {
        if (entry.name == name) {
            return QStringLiteral(":/icons/") + QString::fromUtf8(entry.file.data(), qsizetype(entry.file.size()));
        }
    }
    return std::nullopt;
}

QImage tinted(const QString& file, QSizeF size, qreal devicePixelRatio, const QColor& color) {
    if (!QFile::exists(file)) {
        return {};
    }
    QSvgRenderer renderer(file);
    return tinted(renderer, size, devicePixelRatio, color);
}

QImage tinted(QSvgRenderer& renderer, QSizeF size, qreal devicePixelRatio, const QColor& color) {
    if (!renderer.isValid() || size.isEmpty()) {
        return {};
    }
    const QSize pixels(int(std::ceil(size.width() * devicePixelRatio)),
                       int(std::ceil(size.height() * devicePixelRatio)));
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(devicePixelRatio);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QSizeF fitted = renderer.viewBoxF().size();
    fitted.scale(size, Qt::KeepAspectRatio);
    renderer.render(
        &painter, QRectF(QPointF((size.width() - fitted.width()) / 2, (size.height() - fitted.height()) / 2), fitted));
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRectF(QPointF(), size), color);
    return image;
}

bool paint(QPainter& painter, const QRectF& rect, std::string_view name, const QColor& color) {
    const auto path = file(name);
    if (!path) {
        return false;
    }
    const QImage image = tinted(*path, rect.size(), painter.device()->devicePixelRatioF(), color);
    painter.drawImage(rect.topLeft(), image);
    return true;
}

QIcon icon(std::string_view name, const QColor& color) {
    const auto path = file(name);
    return path ? QIcon(new SymbolEngine(*path, color)) : QIcon();
}

} // namespace lumabroom::Symbols
