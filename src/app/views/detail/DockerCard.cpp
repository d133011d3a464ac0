#include "RuleDetailPanel.h"

#include "CardParts.h"
#include "DetailDialogs.h"
#include "DetailValues.h"
#include "DisplayName.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace lumabroom {

using namespace CardParts;

QWidget* RuleDetailPanel::dockerActionsCard(const RuleScanResult& result) {
    QWidget* card = DetailRows::card(nullptr);
    columnOf(card)->addWidget(label(text("深度清理"), card, QStringLiteral("font-weight:600;")));
    columnOf(card)->addSpacing(4);
    std::vector<QWidget*> rows;
    for (DockerPruneTarget target : allDockerPruneTargets) {
        QLabel* what = label(q(detail(target)), nullptr, kTertiary);
        what->setWordWrap(true);
        auto* row = hbox(nullptr, {vbox(nullptr, {label(q(title(target)), nullptr), what})});
        row->setObjectName(QStringLiteral("prune-") + q(std::string(rawValue(target))));
        static_cast<QHBoxLayout*>(row->layout())->setStretch(0, 1);
        if (const std::optional<std::string> hint = DetailValues::reclaimHint(result, target))
            row->layout()->addWidget(label(q(*hint), row, kSecondary));
        if (model_.pruningTarget() == target) {
            row->layout()->addWidget(DetailRows::spinner(q(title(target)), row));
        } else {
            QPushButton* clean = button(text("清理"), row);
            clean->setAccessibleName(text("清理") + QLatin1Char(' ') + q(title(target)));
            clean->setEnabled(!model_.pruningTarget());
            connect(clean, &QPushButton::clicked, this, [this, target] {
                if (target == DockerPruneTarget::volumes) askVolumePrune();
                else model_.prune(target);
            });
            row->layout()->addWidget(clean);
        }
        rows.push_back(row);
    }
    addRows(card, rows);
    return card;
}

QWidget* RuleDetailPanel::inventory() {
    if (!model_.dockerInventory()) {
        if (!model_.isLoadingInventory()) return nullptr;
        return hbox(nullptr,
                    {DetailRows::spinner(text("正在读取镜像/容器/数据卷清单…"), nullptr),
                     label(text("正在读取镜像/容器/数据卷清单…"), nullptr, kSecondary)},
                    true);
    }
    const DockerInventory& inventory = *model_.dockerInventory();
    return vbox(nullptr, {inventorySection("镜像", inventory.images, &ViewState::imagesExpanded),
                          inventorySection("容器", inventory.containers, &ViewState::containersExpanded),
                          inventorySection("数据卷", inventory.volumes, &ViewState::volumesExpanded)});
}

QWidget* RuleDetailPanel::inventorySection(std::string_view title, const std::vector<DockerItem>& items,
                                           bool ViewState::*expanded) {
    QWidget* card = DetailRows::card(nullptr);
    const bool open = state_.*expanded;
    std::int64_t total = 0;
    for (const DockerItem& item : items) total += item.size;
    QPushButton* header = button(QString(open ? QStringLiteral("▾ ") : QStringLiteral("▸ ")) + text(title), card);
    header->setAccessibleName(text(title));
    header->setFlat(true);
    header->setStyleSheet(QStringLiteral("text-align:left;"));
    // The count stands at the end of the header, away from the title.
    auto* inside = new QHBoxLayout(header);
    inside->setContentsMargins(0, 0, 8, 0);
    inside->addStretch();
    QLabel* count =
        label(counted("%n 个 · %1", static_cast<std::int64_t>(items.size()), {bytes(total)}), header, kSecondary);
    count->setAttribute(Qt::WA_TransparentForMouseEvents);
    inside->addWidget(count);
    connect(header, &QPushButton::clicked, this, [this, expanded] {
        state_.*expanded = !(state_.*expanded);
        scheduleRebuild();
    });
    columnOf(card)->addWidget(header);
    if (!open) return card;
    std::vector<QWidget*> rows;
    for (const DockerItem& item : items) {
        QLabel* size = label(q(bytes(item.size)), nullptr);
        QToolButton* trash = DetailRows::iconButton(Icon::trash, formatted("删除 %1", {item.name}), nullptr);
        trash->setEnabled(!model_.pruningTarget());
        connect(trash, &QToolButton::clicked, this, [this, item] { askDockerItemDelete(item); });
        auto* row =
            hbox(nullptr, {vbox(nullptr, {DetailRows::elided(q(item.name), Qt::ElideMiddle, nullptr),
                                          DetailRows::elided(q(item.detail), Qt::ElideRight, nullptr, kTertiary)}),
                           size, trash});
        static_cast<QHBoxLayout*>(row->layout())->setStretch(0, 1);
        rows.push_back(row);
    }
    addRows(card, rows);
    return card;
}

void RuleDetailPanel::askVolumePrune() {
    state_.confirmVolumePrune = true;
    dialog_ = DetailDialogs::confirm(
        this, text("删除所有未被容器挂载的数据卷?"), text("数据卷里可能保存着数据库等重要数据,删除后无法恢复。"),
        text("删除未使用数据卷"),
        [this] {
            state_.confirmVolumePrune = false;
            model_.prune(DockerPruneTarget::volumes);
        },
        [this] { state_.confirmVolumePrune = false; });
}

void RuleDetailPanel::askDockerItemDelete(const DockerItem& item) {
    state_.pendingDelete = item;
    dialog_ = DetailDialogs::confirm(
        this, formatted("删除 %1?", {item.name}),
        text(item.kind == DockerItem::Kind::volume ? "数据卷内的数据将永久丢失,无法恢复。"
                                                   : "正在被使用的资源 docker 会拒绝删除并提示失败。"),
        text("删除"),
        [this] {
            const std::optional<DockerItem> pending = std::exchange(state_.pendingDelete, std::nullopt);
            if (pending && !model_.pruningTarget()) model_.deleteDockerItem(*pending);
        },
        [this] { state_.pendingDelete.reset(); });
}

} // namespace lumabroom
