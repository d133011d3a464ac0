#include "CardParts.h"

#include "DetailLook.h"
#include "DetailText.h"

#include "text/Formatting.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace lumabroom::CardParts {

std::string bytes(std::int64_t n) { return Formatting::bytes(n); }

QVBoxLayout* columnOf(QWidget* w) { return static_cast<QVBoxLayout*>(w->layout()); }

QPushButton* button(const QString& text, QWidget* parent) {
    // A literal "&" would turn into a mnemonic.
    auto* b = new QPushButton(QString(text).replace(QLatin1Char('&'), QStringLiteral("&&")), parent);
    b->setAccessibleName(text);
    b->setAutoDefault(false);
    b->setProperty("kind", "plain"); // the window's look for a card's buttons
    return b;
}

void addRows(QWidget* card, const std::vector<QWidget*>& rows, int indent) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (i > 0) columnOf(card)->addWidget(DetailRows::divider(card, indent));
        columnOf(card)->addWidget(rows[i]);
    }
}

QWidget* hbox(QWidget* parent, std::initializer_list<QWidget*> widgets, bool stretchAtEnd) {
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget* w : widgets) {
        if (w) {
            w->setParent(row);
            layout->addWidget(w);
        }
    }
    if (stretchAtEnd) layout->addStretch();
    return row;
}

QWidget* vbox(QWidget* parent, std::initializer_list<QWidget*> widgets) {
    auto* column = new QWidget(parent);
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(1);
    for (QWidget* w : widgets) {
        if (w) {
            w->setParent(column);
            layout->addWidget(w);
        }
    }
    return column;
}

QWidget* tick(bool reportOnly, bool checked, const QString& name, std::function<void()> onToggle, QWidget* parent) {
    if (reportOnly) {
        QLabel* dot = label(QStringLiteral("•"), parent, kTertiary);
        dot->setFixedWidth(18);
        return dot;
    }
    auto* box = new QCheckBox(parent);
    box->setChecked(checked);
    box->setAccessibleName(name);
    QObject::connect(box, &QCheckBox::clicked, box, [onToggle = std::move(onToggle)] { onToggle(); });
    return box;
}

QToolButton* revealButton(BarRow* row, const std::filesystem::path& path) {
    QToolButton* reveal = DetailRows::iconButton(Icon::reveal, text(revealKey()), row);
    QObject::connect(reveal, &QToolButton::clicked, reveal, [path] { DetailLook::reveal(path); });
    row->setRevealButton(reveal);
    return reveal;
}

std::vector<BarRow::MenuItem> pathMenu(const std::filesystem::path& path) {
    return {{text(revealKey()), [path] { DetailLook::reveal(path); }},
            {text("复制路径"), [path] { DetailLook::copyToClipboard(path.string()); }}};
}

} // namespace lumabroom::CardParts
