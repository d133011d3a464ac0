#include "ViewParts.h"

#include "Symbols.h"
#include "model/AppText.h"
#include "text/Formatting.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

namespace lumabroom::ViewParts {

QString text(std::string_view key) { return QString::fromStdString(AppText::text(key)); }
QString qs(const std::string& s) { return QString::fromStdString(s); }
QString bytes(std::int64_t count) { return qs(Formatting::bytes(count)); }
QString buttonText(QString text) { return text.replace(QLatin1Char('&'), QStringLiteral("&&")); }

QString rgba(QColor c) {
    return QStringLiteral("rgba(%1,%2,%3,%4)").arg(c.red()).arg(c.green()).arg(c.blue()).arg(c.alphaF(), 0, 'f', 3);
}

QLabel* label(const QString& content, QWidget* parent) {
    auto* l = new QLabel(content, parent);
    l->setAttribute(Qt::WA_TransparentForMouseEvents);
    return l;
}

QLabel* symbolLabel(std::string_view symbol, const QColor& colour, int side, QWidget* parent) {
    auto* l = label({}, parent);
    l->setPixmap(Symbols::icon(symbol, colour).pixmap(side, side));
    l->setFixedSize(side, side);
    return l;
}

QPushButton* roundButton(std::string_view symbol, const QColor& colour, const QString& tip, QWidget* parent) {
    auto* b = new QPushButton(parent);
    b->setIcon(Symbols::icon(symbol, colour));
    b->setIconSize(QSize(16, 16));
    b->setToolTip(tip);
    b->setAccessibleName(tip);
    b->setFixedSize(34, 34);
    b->setProperty("kind", QStringLiteral("round"));
    return b;
}

QHBoxLayout* makeRow(QPushButton& button, const QString& name) {
    button.setAccessibleName(name);
    button.setProperty("kind", QStringLiteral("row"));
    button.setMinimumHeight(40);
    button.setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto* row = new QHBoxLayout(&button);
    row->setContentsMargins(12, 6, 12, 6);
    row->setSpacing(8);
    return row;
}

void repolish(QWidget& widget) {
    widget.style()->unpolish(&widget);
    widget.style()->polish(&widget);
}

} // namespace lumabroom::ViewParts
