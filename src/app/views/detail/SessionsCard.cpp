#include "RuleDetailPanel.h"

#include "CardParts.h"
#include "DetailDialogs.h"
#include "DisplayName.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

namespace lumabroom {

using namespace CardParts;

std::vector<ScanEntry> RuleDetailPanel::selectedTopSessions() const {
    std::vector<ScanEntry> selected;
    if (const auto& sessions = model_.topSessions())
        std::ranges::copy_if(*sessions, std::back_inserter(selected),
                             [this](const ScanEntry& e) { return state_.selectedSessionIDs.contains(e.id()); });
    return selected;
}

QWidget* RuleDetailPanel::topSessionsBar() {
    const auto& sessions = model_.topSessions();
    if (!sessions || sessions->empty()) return nullptr;
    const bool all = std::ranges::all_of(
        *sessions, [this](const ScanEntry& e) { return state_.selectedSessionIDs.contains(e.id()); });
    QPushButton* toggle = button(text(all ? "取消全选" : "全选"), nullptr);
    toggle->setObjectName(QStringLiteral("sessions-toggle"));
    connect(toggle, &QPushButton::clicked, this, [this, all] {
        state_.selectedSessionIDs.clear();
        if (!all && model_.topSessions())
            for (const ScanEntry& e : *model_.topSessions()) state_.selectedSessionIDs.insert(e.id());
        scheduleRebuild();
    });
    auto* row = hbox(nullptr, {toggle});
    const std::vector<ScanEntry> selected = selectedTopSessions();
    if (!selected.empty()) {
        QPushButton* remove = button(text("删除所选"), row);
        remove->setObjectName(QStringLiteral("sessions-delete"));
        connect(remove, &QPushButton::clicked, this, &RuleDetailPanel::askBatchSessionDelete);
        row->layout()->addWidget(remove);
    }
    std::int64_t size = 0;
    for (const ScanEntry& e : selected) size += e.size;
    static_cast<QHBoxLayout*>(row->layout())->addStretch();
    QLabel* summary = label(counted("已选 %1/%n 项 · %2", static_cast<std::int64_t>(sessions->size()),
                                    {number(static_cast<std::int64_t>(selected.size())), bytes(size)}),
                            row, kSecondary);
    summary->setObjectName(QStringLiteral("sessions-summary"));
    row->layout()->addWidget(summary);
    return row;
}

QWidget* RuleDetailPanel::topSessionsCard() {
    QWidget* card = DetailRows::card(nullptr);
    auto* heading = hbox(card, {label(text("最大的会话"), nullptr, QStringLiteral("font-weight:600;"))});
    if (model_.isLoadingTopSessions()) heading->layout()->addWidget(DetailRows::spinner(text("最大的会话"), heading));
    static_cast<QHBoxLayout*>(heading->layout())->addStretch();
    columnOf(card)->addWidget(heading);
    const auto& sessions = model_.topSessions();
    if (!sessions || sessions->empty()) return card;
    std::vector<QWidget*> rows;
    for (const ScanEntry& entry : *sessions) {
        const std::string id = entry.id();
        const QString name = q(displayName(entry));
        auto* row = new BarRow(QColor(), 0, nullptr);
        row->setObjectName(QStringLiteral("session-row"));
        row->setAccessibleName(name);
        auto toggle = [this, id] {
            if (!state_.selectedSessionIDs.erase(id)) state_.selectedSessionIDs.insert(id);
            scheduleRebuild();
        };
        row->setOnClick(toggle);
        row->content()->addWidget(tick(false, state_.selectedSessionIDs.contains(id), name, toggle, row));
        QLabel* file = DetailRows::elided(q(entry.url.filename().string()), Qt::ElideMiddle, nullptr, kTertiary);
        file->setToolTip(q(entry.url.string()));
        row->content()->addWidget(vbox(row, {DetailRows::elided(name, Qt::ElideRight, nullptr), file}), 1);
        row->content()->addWidget(revealButton(row, entry.url));
        row->content()->addWidget(label(q(bytes(entry.size)), row, kSecondary));
        QToolButton* trash = DetailRows::iconButton(Icon::trash, formatted("删除 %1", {name.toStdString()}), row);
        connect(trash, &QToolButton::clicked, this, [this, entry] { askSessionDelete(entry); });
        row->content()->addWidget(trash);
        row->setMenu(pathMenu(entry.url));
        rows.push_back(row);
    }
    addRows(card, rows, 30);
    return card;
}

void RuleDetailPanel::askSessionDelete(const ScanEntry& entry) {
    state_.pendingSessionDelete = entry;
    dialog_ = DetailDialogs::confirm(
        this, formatted("删除 %1?", {displayName(entry)}),
        text("将该会话文件移到废纸篓;之后无法在对应工具里 resume 这份对话。"), text("删除"),
        [this] {
            const std::optional<ScanEntry> pending = std::exchange(state_.pendingSessionDelete, std::nullopt);
            if (pending) model_.deleteSessionFile(*pending, ruleID_);
        },
        [this] { state_.pendingSessionDelete.reset(); });
}

void RuleDetailPanel::askBatchSessionDelete() {
    const std::vector<ScanEntry> selected = selectedTopSessions();
    std::int64_t size = 0;
    for (const ScanEntry& e : selected) size += e.size;
    state_.confirmBatchSessionDelete = true;
    dialog_ = DetailDialogs::confirm(
        this, counted("删除所选 %n 个会话,共 %1?", static_cast<std::int64_t>(selected.size()), {bytes(size)}),
        text("将所选会话文件移到废纸篓;之后无法在对应工具里 resume 这些对话。"), text("删除"),
        [this] {
            state_.confirmBatchSessionDelete = false;
            model_.deleteSessionFiles(selectedTopSessions(), ruleID_);
            state_.selectedSessionIDs.clear();
            scheduleRebuild();
        },
        [this] { state_.confirmBatchSessionDelete = false; });
}

} // namespace lumabroom
