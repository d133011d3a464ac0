#include "EmptyState.h"

#include "Theme.h"
#include "ViewParts.h"

#include <QLabel>
#include <QVBoxLayout>

namespace lumabroom {

EmptyState::EmptyState(const std::string& symbol, const QString& title, const QString& description, bool light,
                       QWidget* parent)
    : QWidget(parent) {
    setObjectName(QStringLiteral("emptyState"));
    setAccessibleName(title);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(24, 80, 24, 0);
    column->setSpacing(10);
    column->addWidget(ViewParts::symbolLabel(symbol, Theme::of(!light).tertiary, 48, this), 0, Qt::AlignHCenter);
    auto* head = new QLabel(title, this);
    head->setObjectName(QStringLiteral("emptyTitle"));
    QFont bold = head->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.3);
    head->setFont(bold);
    head->setAlignment(Qt::AlignCenter);
    column->addWidget(head);
    if (!description.isEmpty()) {
        auto* body = new QLabel(description, this);
        body->setObjectName(QStringLiteral("secondary"));
        body->setWordWrap(true);
        body->setAlignment(Qt::AlignCenter);
        column->addWidget(body);
    }
}

} // namespace lumabroom
