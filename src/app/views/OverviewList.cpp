#include "OverviewList.h"

#include "EmptyState.h"
#include "GroupHeader.h"
#include "RuleCard.h"
#include "ViewParts.h"
#include "chart/SunburstPalette.h"
#include "model/AppModel.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace lumabroom {

using ViewParts::text;

OverviewList::OverviewList(AppModel& model, bool light, QWidget* parent)
    : QWidget(parent),
      model_(model),
      light_(light),
      list_(new QVBoxLayout(this)) {
    setObjectName(QStringLiteral("panelPage"));
    list_->setContentsMargins(0, 0, 0, 0);
    list_->setSpacing(6);
}

void OverviewList::showGroups(std::optional<Category> filter) {
    if (filter) addBackButton();
    addRows(filter);
    list_->addStretch(1);
}

void OverviewList::addBackButton() {
    const QString title = text("全部分类");
    auto* back = new QPushButton(QStringLiteral("‹  ") + ViewParts::buttonText(title), this);
    back->setObjectName(QStringLiteral("back"));
    back->setAccessibleName(title);
    back->setFlat(true);
    back->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    connect(back, &QPushButton::clicked, &model_, [this] { model_.setRoute(Route::overview()); });
    list_->addWidget(back);
}

void OverviewList::addRows(std::optional<Category> filter) {
    const auto groups = model_.visibleGroups();
    if (groups.empty()) {
        if (!model_.isBusy())
            list_->addWidget(new EmptyState("sparkles", text("已经很干净了"),
                                            text("没有发现可清理的缓存;可在右上角选项里打开「显示空项」"), light_,
                                            this));
        return;
    }
    for (const VisibleGroup& group : groups) {
        if (filter && group.category != *filter) continue;
        const bool collapsed = model_.collapsedCategories().contains(group.category);
        auto* header = new GroupHeader(model_, group, collapsed, light_, this);
        header->setGroup(group,
                         SunburstPalette::categoryColor(group.category, groups, light_, SunburstPalette::stored()));
        list_->addWidget(header);
        if (collapsed) continue;
        for (const RuleScanResult* result : group.results) {
            auto* card = new RuleCard(model_, *result, light_, this);
            card->setResult(*result, model_.selection(*result));
            auto* indented = new QHBoxLayout;
            indented->setContentsMargins(18, 0, 0, 0);
            indented->addWidget(card);
            list_->addLayout(indented);
        }
    }
}

} // namespace lumabroom
