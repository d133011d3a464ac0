#include "RuleDetailPanel.h"

#include "CardParts.h"
#include "DetailDialogs.h"
#include "DetailLook.h"
#include "DetailValues.h"
#include "DisplayName.h"

#include "tools/OllamaModelLister.h"
#include "tools/SimulatorDevices.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace lumabroom {

using namespace CardParts;

QWidget* RuleDetailPanel::selectionBar(const RuleScanResult& result) {
    const bool all = model_.selection(result) == RuleSelection::all;
    QPushButton* toggle = button(text(all ? "取消全选" : "全选"), nullptr);
    toggle->setEnabled(result.totalSize() > 0);
    connect(toggle, &QPushButton::clicked, this, [this] {
        if (const RuleScanResult* r = model_.result(ruleID_)) model_.toggleRule(*r);
    });
    std::int64_t count = 0, size = 0;
    for (const ScanEntry& e : result.entries) {
        if (model_.isSelected(e.id())) {
            ++count;
            size += e.size;
        }
    }
    QLabel* summary = label(
        counted("已选 %1/%n 项 · %2", static_cast<std::int64_t>(result.entries.size()), {number(count), bytes(size)}),
        nullptr, kSecondary);
    summary->setObjectName(QStringLiteral("selection-summary"));
    auto* row = hbox(nullptr, {toggle}, true);
    summary->setParent(row);
    row->layout()->addWidget(summary);
    return row;
}

QWidget* RuleDetailPanel::entriesCard(const RuleScanResult& result) {
    QWidget* card = DetailRows::card(nullptr);
    card->setObjectName(QStringLiteral("entries-card-top"));
    entriesCard_ = card;
    const std::vector<ScanEntry> visible = DetailValues::visibleEntries(result);
    const bool foldable = visible.size() >= DetailValues::kFoldAt;
    const bool folded = foldable && !state_.entriesExpanded;
    const std::size_t shown = folded ? DetailValues::kFoldedRows : visible.size();
    const std::int64_t maxSize = result.entries.empty() ? 0 : result.entries.front().size;

    std::vector<QWidget*> rows;
    for (std::size_t i = 0; i < shown; ++i) rows.push_back(entryRow(result, visible[i], maxSize));
    if (folded) {
        std::int64_t rest = 0;
        for (std::size_t i = shown; i < visible.size(); ++i) rest += visible[i].size;
        QPushButton* unfold = button(
            QStringLiteral("⌄ ")
                + counted("展开其余 %n 项 · %1", static_cast<std::int64_t>(visible.size() - shown), {bytes(rest)}),
            nullptr);
        unfold->setFlat(true);
        unfold->setObjectName(QStringLiteral("unfold"));
        connect(unfold, &QPushButton::clicked, this, [this] {
            state_.entriesExpanded = true;
            scheduleRebuild();
        });
        rows.push_back(unfold);
    } else if (foldable) {
        QPushButton* fold = button(QStringLiteral("⌃ ") + text("收起"), nullptr);
        fold->setAccessibleName(text("收起"));
        fold->setFlat(true);
        fold->setObjectName(QStringLiteral("fold"));
        connect(fold, &QPushButton::clicked, this, [this] {
            state_.entriesExpanded = false;
            scrollToEntries_ = true;
            scheduleRebuild();
        });
        rows.push_back(fold);
    }
    if (visible.size() < result.entries.size()) {
        std::int64_t visibleBytes = 0;
        for (const ScanEntry& e : visible) visibleBytes += e.size;
        QLabel* rest = label(counted("其余 %n 项共 %1(单个 < 100 MB),可用上方「全选」整组勾选",
                                     static_cast<std::int64_t>(result.entries.size() - visible.size()),
                                     {bytes(result.totalSize() - visibleBytes)}),
                             nullptr, kSecondary);
        rest->setObjectName(QStringLiteral("left-out"));
        rest->setWordWrap(true);
        rows.push_back(rest);
    }
    addRows(card, rows);
    return card;
}

QWidget* RuleDetailPanel::entryRow(const RuleScanResult& result, const ScanEntry& entry, std::int64_t maxSize) {
    const bool reportOnly = result.rule.safety == SafetyLevel::reportOnly;
    const QString name = q(displayName(entry));
    auto* row = new BarRow(DetailLook::ruleColor(result.rule), DetailValues::fraction(entry.size, maxSize), nullptr);
    row->setObjectName(QStringLiteral("entry-row"));
    row->setAccessibleName(name);
    const std::string id = entry.id();
    auto toggle = [this, id] {
        if (const RuleScanResult* r = model_.result(ruleID_)) model_.toggleEntry(*r, id);
    };
    if (!reportOnly) row->setOnClick(toggle);
    row->content()->addWidget(tick(reportOnly, model_.isSelected(id), name, toggle, row));
    QLabel* title = DetailRows::elided(name, Qt::ElideRight, row);
    title->setToolTip(q(entry.url.string()));
    row->content()->addWidget(title, 1);
    row->content()->addWidget(revealButton(row, entry.url));
    row->content()->addWidget(label(q(bytes(entry.size)), row, kSecondary));
    if (DetailValues::rowsHaveOwnDelete(result.rule.id)) {
        QToolButton* trash = DetailRows::iconButton(Icon::trash, formatted("删除 %1", {name.toStdString()}), row);
        connect(trash, &QToolButton::clicked, this, [this, entry] { askEntryDelete(entry); });
        row->content()->addWidget(trash);
    }
    row->setMenu(pathMenu(entry.url));
    return row;
}

void RuleDetailPanel::askEntryDelete(const ScanEntry& entry) {
    state_.pendingModelDelete = entry;
    dialog_ = DetailDialogs::confirm(
        this, formatted("删除 %1?", {displayName(entry)}), text(DetailValues::entryDeleteMessageKey(ruleID_)),
        text("删除"),
        [this] {
            if (!state_.pendingModelDelete) return;
            const ScanEntry pending = *std::exchange(state_.pendingModelDelete, std::nullopt);
            if (ruleID_ == "tool.ollama") {
                if (OllamaModelRemover::modelName(pending.url)) model_.deleteOllamaModel(pending);
            } else if (ruleID_ == "xcode.simulator-devices") {
                if (SimulatorDevices::udid(pending.url)) model_.deleteSimulator(pending);
            } else if (ruleID_ == "code.claude-sessions") {
                model_.deleteClaudeSessions(pending);
            }
        },
        [this] { state_.pendingModelDelete.reset(); });
}

} // namespace lumabroom
