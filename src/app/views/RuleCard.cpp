#include "RuleCard.h"

#include "RuleCheckbox.h"
#include "RuleIconTile.h"
#include "SafetyBadge.h"
#include "Symbols.h"
#include "Theme.h"
#include "ViewParts.h"
#include "model/AppModel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

namespace lumabroom {

using ViewParts::qs;

RuleCard::RuleCard(AppModel& model, const RuleScanResult& result, bool light, QWidget* parent)
    : QPushButton(parent),
      light_(light) {
    const CleanRule& rule = result.rule;
    QHBoxLayout* row = ViewParts::makeRow(*this, qs(rule.name()));
    setObjectName(QStringLiteral("rule.") + qs(rule.id));
    auto* tile = new RuleIconTile(rule, 22, this);
    tile->setAttribute(Qt::WA_TransparentForMouseEvents);
    row->addWidget(tile);
    QStringList tip{qs(rule.note())};
    for (const std::string& path : rule.paths) tip << qs(path);
    name_ = new QLabel(qs(rule.name()), this); // keeps its tooltip, so it takes the pointer
    name_->setToolTip(tip.join(QLatin1Char('\n')));
    row->addWidget(name_);
    if (rule.safety != SafetyLevel::safe) {
        auto* badge = new SafetyBadge(rule.safety, this);
        badge->setObjectName(QStringLiteral("safetyBadge"));
        badge->setToolTip(name_->toolTip());
        row->addWidget(badge);
    }
    row->addStretch(1);
    size_ = ViewParts::label({}, this);
    size_->setObjectName(QStringLiteral("size"));
    row->addWidget(size_);
    addCheckbox(*row, model, rule.id);
    row->addWidget(ViewParts::symbolLabel("chevron.right", Theme::of(!light).tertiary, 12, this));
    const std::string ruleID = rule.id;
    connect(this, &QPushButton::clicked, &model, [m = &model, ruleID] { m->setRoute(Route::rule(ruleID)); });
}

void RuleCard::addCheckbox(QHBoxLayout& row, AppModel& model, const std::string& ruleID) {
    checkbox_ = new QToolButton(this);
    checkbox_->setObjectName(QStringLiteral("check.") + qs(ruleID));
    checkbox_->setAutoRaise(true);
    checkbox_->setIconSize(QSize(18, 18));
    checkbox_->setAccessibleName(ViewParts::text("勾选/取消整组") + QStringLiteral(" · ") + accessibleName());
    checkbox_->setStyleSheet(QStringLiteral("QToolButton{border:none;}"));
    connect(checkbox_, &QToolButton::clicked, &model, [m = &model, ruleID] {
        if (const RuleScanResult* r = m->result(ruleID)) m->toggleRule(*r);
    });
    row.addWidget(checkbox_);
}

void RuleCard::setResult(const RuleScanResult& result, RuleSelection selection) {
    const Theme& theme = Theme::of(!light_);
    const std::int64_t size = result.totalSize();
    size_->setText(ViewParts::bytes(size));
    size_->setStyleSheet(size < 1 ? QStringLiteral("color:%1;").arg(ViewParts::rgba(theme.tertiary)) : QString());

    const RuleCheckbox glyph = RuleCheckbox::of(result.rule.safety, size, selection);
    QColor colour = glyph.accent ? theme.accentA : theme.secondary;
    colour.setAlphaF(static_cast<float>(glyph.opacity));
    checkbox_->setIcon(Symbols::icon(glyph.glyph, colour));
    checkbox_->setProperty("glyph", qs(std::string(glyph.glyph)));
    checkbox_->setEnabled(glyph.enabled);
    checkbox_->setToolTip(glyph.enabled ? ViewParts::text("勾选/取消整组") : QString());

    const bool selected = selection != RuleSelection::none;
    if (property("selected").isValid() && property("selected").toBool() == selected) return;
    setProperty("selected", selected);
    ViewParts::repolish(*this);
}

} // namespace lumabroom
