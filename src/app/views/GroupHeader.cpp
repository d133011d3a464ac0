#include "GroupHeader.h"

#include "AnimatedBytes.h"
#include "Theme.h"
#include "ViewParts.h"
#include "model/AppModel.h"
#include "model/AppText.h"
#include "model/DisplayName.h"

#include <QHBoxLayout>
#include <QLabel>

#include <algorithm>

namespace lumabroom {

using ViewParts::qs;
using ViewParts::rgba;

GroupHeader::GroupHeader(AppModel& model, Category category, bool light, QWidget* parent) : QPushButton(parent) {
    const QString name = qs(displayName(category));
    const Theme& theme = Theme::of(!light);
    const QString dim = QStringLiteral("color:%1;").arg(rgba(theme.tertiary));
    QHBoxLayout* row = ViewParts::makeRow(*this, name);
    setObjectName(QStringLiteral("group.") + qs(std::string(rawValue(category))));

    dot_ = ViewParts::label({}, this);
    dot_->setFixedSize(8, 8);
    row->addWidget(dot_);
    title_ = ViewParts::label(name, this);
    QFont bold = title_->font();
    bold.setBold(true);
    title_->setFont(bold);
    row->addWidget(title_);
    count_ = ViewParts::label({}, this);
    count_->setStyleSheet(dim);
    row->addWidget(count_);
    summary_ = ViewParts::label({}, this);
    summary_->setObjectName(QStringLiteral("groupSummary"));
    summary_->setStyleSheet(dim);
    summary_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    row->addWidget(summary_, 1);
    row->addStretch(0); // takes the summary's room while it is hidden
    total_ = new AnimatedBytes(this);
    total_->setObjectName(QStringLiteral("groupTotal"));
    // A button's palette need not carry the window's scheme; the number takes it from the theme.
    total_->setPalette(theme.palette());
    total_->setAttribute(Qt::WA_TransparentForMouseEvents);
    total_->setFont(bold);
    row->addWidget(total_);
    connect(this, &QPushButton::clicked, &model, [m = &model, category] { m->toggleExpansion(category); });
}

void GroupHeader::setGroup(const VisibleGroup& group, bool collapsed, const QColor& dot) {
    dot_->setStyleSheet(QStringLiteral("background:%1;border-radius:4px;").arg(rgba(dot)));
    count_->setText(qs(AppText::counted("%n 项", static_cast<std::int64_t>(group.results.size()))));
    summary_->setVisible(collapsed);
    if (collapsed) summary_->setText(summaryText(group));
    total_->setBytes(group.total());
    if (property("collapsed").isValid() && property("collapsed").toBool() == collapsed) return;
    setProperty("collapsed", collapsed);
    ViewParts::repolish(*this);
}

QString GroupHeader::summaryText(const VisibleGroup& group) const {
    // What is left of the row beside the other pieces, so the line ends in an ellipsis before the total.
    const QFontMetrics metrics(summary_->font());
    const QFontMetrics boldMetrics(title_->font());
    const int room = 540 - 24 - 8 - 5 * 8 - boldMetrics.horizontalAdvance(title_->text())
                     - metrics.horizontalAdvance(count_->text())
                     - boldMetrics.horizontalAdvance(ViewParts::bytes(group.total()));
    return metrics.elidedText(qs(group.summary()), Qt::ElideRight, std::max(room, 0));
}

} // namespace lumabroom
