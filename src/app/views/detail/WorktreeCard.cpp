#include "RuleDetailPanel.h"

#include "CardParts.h"
#include "DetailDialogs.h"
#include "DetailLook.h"
#include "DetailValues.h"

#include "text/Formatting.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QToolButton>
#include <QVBoxLayout>

namespace lumabroom {

using namespace CardParts;

namespace {

// On a light background the bright named colours are too pale to read as text.
QLabel* capsule(const QString& text, const QColor& colour, double opacity, bool light, QWidget* parent) {
    QColor background = colour;
    background.setAlphaF(static_cast<float>(opacity));
    QLabel* chip = label(text, parent,
                         QStringLiteral("color:%1;background:%2;border-radius:7px;padding:0 6px;")
                             .arg((light ? colour.darker(160) : colour).name(), background.name(QColor::HexArgb)));
    chip->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    return chip;
}

QWidget* folderIcon(QWidget* parent) {
    auto* icon = new QLabel(parent);
    icon->setPixmap(DetailRows::icon(Icon::folder).pixmap(16, 16));
    return icon;
}

// The repository's name, its branch and what would be lost with it.
QWidget* titleLine(const WorktreeInfo& info, bool light) {
    QLabel* name = label(q(info.repoName), nullptr, QStringLiteral("font-weight:500;"));
    name->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    auto* first = hbox(nullptr, {name});
    // The branch gives way first, cut in the middle; the badges say what is at stake and stay whole.
    QLabel* chip = info.branch ? DetailRows::elided(QStringLiteral("⎇ ") + q(*info.branch), Qt::ElideMiddle, first,
                                                    QStringLiteral("color:palette(placeholder-text);padding:0 6px;"))
                               : capsule(QStringLiteral("⎇ ") + text("无分支"), DetailLook::orange(), 0, light, first);
    chip->setToolTip(info.branch ? formatted("分支 %1 不会被删除,它上面的提交都还在", {*info.branch})
                                 : text("游离检出:HEAD 直接指着某个提交,没有分支拴着它"));
    chip->setObjectName(QStringLiteral("branch-chip"));
    first->layout()->addWidget(chip);
    auto addBadge = [&](const QString& text, const QString& tip, const QColor& colour) {
        QLabel* badge = capsule(text, colour, 0.18, light, first);
        badge->setToolTip(tip);
        badge->setObjectName(QStringLiteral("badge"));
        first->layout()->addWidget(badge);
    };
    if (info.dirtyFiles > 0)
        addBadge(counted("%n 个改动没提交", info.dirtyFiles), text("这些文件改了还没 commit,删掉 worktree 就没了"),
                 DetailLook::orange());
    if (info.orphanCommits > 0)
        addBadge(counted("%n 个提交只在这里", info.orphanCommits),
                 text("这些提交不在任何分支和远端上,删掉之后没有任何东西指向它们,找不回来"), DetailLook::orange());
    if (!info.isRisky())
        addBadge(text("可安全删除"), text("没有没提交的改动,提交也都在分支上——分支不会被删,所以什么都不会丢"),
                 DetailLook::green());
    static_cast<QHBoxLayout*>(first->layout())->addStretch();
    return first;
}

} // namespace

QWidget* RuleDetailPanel::worktreeSection(const RuleScanResult& result) {
    const auto& worktrees = model_.worktrees();
    if (!worktrees) {
        if (!model_.isLoadingWorktrees()) return nullptr;
        return hbox(nullptr,
                    {DetailRows::spinner(text("正在检查各 worktree 的 git 状态…"), nullptr),
                     label(text("正在检查各 worktree 的 git 状态…"), nullptr, kSecondary)},
                    true);
    }
    if (worktrees->empty()) return emptyState("没有派生 worktree", "会话库里的主仓都没有登记 worktree");

    auto* section = vbox(nullptr, {});
    section->layout()->setSpacing(6);
    std::vector<WorktreeInfo> safe, risky;
    for (const WorktreeInfo& w : *worktrees) (w.isRisky() ? risky : safe).push_back(w);
    auto* chips = hbox(section, {}, false);
    if (!safe.empty())
        chips->layout()->addWidget(capsule(counted("可安全删除 %n 个 · %1", static_cast<std::int64_t>(safe.size()),
                                                   {bytes(DetailValues::worktreeTotal(safe))}),
                                           DetailLook::green(), 0.16, light(), chips));
    if (!risky.empty())
        chips->layout()->addWidget(capsule(counted("有丢失风险 %n 个 · %1", static_cast<std::int64_t>(risky.size()),
                                                   {bytes(DetailValues::worktreeTotal(risky))}),
                                           DetailLook::orange(), 0.16, light(), chips));
    static_cast<QHBoxLayout*>(chips->layout())->addStretch();
    section->layout()->addWidget(chips);

    const std::int64_t maxSize = DetailValues::largestWorktree(*worktrees);
    for (const DetailValues::WorktreeGroup& group : DetailValues::worktreeGroups(*worktrees)) {
        QWidget* card = DetailRows::card(section);
        QLabel* repoName = label(q(std::filesystem::path(group.repoPath).filename().string()), nullptr,
                                 QStringLiteral("font-weight:600;"));
        QLabel* repoPath =
            DetailRows::elided(q(DetailValues::withTilde(group.repoPath)), Qt::ElideMiddle, nullptr, kTertiary);
        repoPath->setToolTip(q(group.repoPath));
        QLabel* total = label(counted("%n 个 · %1", static_cast<std::int64_t>(group.items.size()),
                                      {bytes(DetailValues::worktreeTotal(group.items))}),
                              nullptr, kSecondary);
        auto* header = new BarRow(QColor(), 0, card);
        for (QWidget* w : {folderIcon(header), vbox(nullptr, {repoName, repoPath}), static_cast<QWidget*>(total)}) {
            w->setParent(header);
            header->content()->addWidget(w);
        }
        header->content()->setStretch(1, 1);
        header->setMenu(
            {{text(CardParts::revealRepositoryKey()), [path = group.repoPath] { DetailLook::reveal(path); }}});
        columnOf(card)->addWidget(header);
        std::vector<QWidget*> rows;
        for (const WorktreeInfo& info : group.items) rows.push_back(worktreeRow(result, info, maxSize));
        addRows(card, rows);
        section->layout()->addWidget(card);
    }
    return section;
}

QWidget* RuleDetailPanel::worktreeRow(const RuleScanResult& result, const WorktreeInfo& info, std::int64_t maxSize) {
    const bool removing = model_.removingWorktreeID() == info.id();
    auto* row =
        new BarRow(DetailLook::ruleColor(result.rule), DetailValues::fraction(info.size.value_or(0), maxSize), nullptr);
    row->setObjectName(QStringLiteral("worktree-row"));
    row->setAccessibleName(q(info.repoName));
    row->content()->addWidget(label(QStringLiteral("↳"), row, kTertiary));

    QWidget* first = titleLine(info, light());

    auto* second = hbox(nullptr, {});
    QLabel* path =
        DetailRows::elided(q(DetailValues::withTilde(info.path.string())), Qt::ElideMiddle, second, kTertiary);
    path->setToolTip(q(info.path.string()));
    second->layout()->addWidget(path);
    if (info.lastModified) {
        QLabel* age =
            label(QStringLiteral("· ") + q(Formatting::age(*info.lastModified, std::chrono::system_clock::now())),
                  second, kTertiary);
        age->setToolTip(text("最后一次有文件改动的时间"));
        second->layout()->addWidget(age);
    }
    static_cast<QHBoxLayout*>(second->layout())->addStretch();
    QWidget* lines = vbox(row, {first, second});
    lines->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    row->content()->addWidget(lines, 1);
    row->content()->addWidget(revealButton(row, info.path));
    row->content()->addWidget(info.size ? label(q(bytes(*info.size)), row, kSecondary)
                                        : label(text("计算中…"), row, kTertiary));
    if (removing) {
        row->content()->addWidget(DetailRows::spinner(q("git worktree remove " + info.repoName), row));
    } else {
        QToolButton* trash = DetailRows::iconButton(Icon::trash, QStringLiteral("git worktree remove"), row);
        trash->setAccessibleName(q("git worktree remove " + info.repoName));
        trash->setEnabled(!model_.removingWorktreeID());
        connect(trash, &QToolButton::clicked, this, [this, info] { askWorktreeRemoval(info); });
        row->content()->addWidget(trash);
    }
    row->setMenu({{text(CardParts::revealKey()), [p = info.path] { DetailLook::reveal(p); }}});
    return row;
}

void RuleDetailPanel::askWorktreeRemoval(const WorktreeInfo& worktree) {
    state_.pendingWorktreeDelete = worktree;
    dialog_ = DetailDialogs::confirm(
        this, formatted("删除 worktree %1?", {worktree.repoName}), q(DetailValues::worktreeDeleteWarning(worktree)),
        text(worktree.isRisky() ? "强制删除(丢弃未保存工作)" : "删除"),
        [this] {
            const std::optional<WorktreeInfo> pending = std::exchange(state_.pendingWorktreeDelete, std::nullopt);
            // A second removal never starts beside the first.
            if (pending && !model_.removingWorktreeID()) model_.removeWorktree(*pending);
        },
        [this] { state_.pendingWorktreeDelete.reset(); });
}

} // namespace lumabroom
