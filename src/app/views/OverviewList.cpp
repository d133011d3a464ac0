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

using ViewParts::qs;
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
    // Only the layout is emptied: the widgets wait in `unused_` to be placed again.
    while (QLayoutItem* item = list_->takeAt(0)) {
        // An indenting row is a layout of its own; deleting it leaves the card it holds.
        if (QLayout* indented = item->layout()) delete indented;
        else delete item;
    }
    unused_ = std::exchange(rows_, {});
    order_.clear();

    if (filter) {
        place<QPushButton>(QStringLiteral("back"), [this] {
            const QString title = text("全部分类");
            auto* back = new QPushButton(QStringLiteral("‹  ") + ViewParts::buttonText(title), this);
            back->setObjectName(QStringLiteral("back"));
            back->setAccessibleName(title);
            back->setFlat(true);
            back->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
            connect(back, &QPushButton::clicked, &model_, [this] { model_.setRoute(Route::overview()); });
            return back;
        });
    }
    placeGroups(filter);
    list_->addStretch(1);
    for (const auto& [key, widget] : unused_) delete widget;
    unused_.clear();
}

void OverviewList::placeGroups(std::optional<Category> filter) {
    const auto groups = model_.visibleGroups();
    if (groups.empty()) {
        if (model_.isBusy()) return;
        place<EmptyState>(QStringLiteral("empty"), [this] {
            return new EmptyState("sparkles", text("已经很干净了"),
                                  text("没有发现可清理的缓存;可在右上角选项里打开「显示空项」"), light_, this);
        });
        return;
    }
    for (const VisibleGroup& group : groups) {
        if (filter && group.category != *filter) continue;
        const Category category = group.category;
        const bool collapsed = model_.collapsedCategories().contains(category);
        auto* header = place<GroupHeader>(QStringLiteral("group.") + qs(std::string(rawValue(category))),
                                          [&] { return new GroupHeader(model_, category, light_, this); });
        header->setGroup(group, collapsed,
                         SunburstPalette::categoryColor(category, groups, light_, SunburstPalette::stored()));
        if (collapsed) continue;
        for (const RuleScanResult* result : group.results) {
            auto* card = place<RuleCard>(
                QStringLiteral("rule.") + qs(result->rule.id),
                [&] { return new RuleCard(model_, *result, light_, this); }, 18);
            card->setResult(*result, model_.selection(*result));
        }
    }
}

template <class Row, class Make>
Row* OverviewList::place(const QString& key, Make make, int indent) {
    QWidget* row = nullptr;
    if (const auto kept = unused_.find(key); kept != unused_.end()) {
        row = kept->second;
        unused_.erase(kept);
    } else {
        row = make();
    }
    rows_[key] = row;
    order_.push_back(row);
    if (indent == 0) {
        list_->addWidget(row);
    } else {
        auto* indented = new QHBoxLayout;
        indented->setContentsMargins(indent, 0, 0, 0);
        indented->addWidget(row);
        list_->addLayout(indented);
    }
    return static_cast<Row*>(row);
}

} // namespace lumabroom
