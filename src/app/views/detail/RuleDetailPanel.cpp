#include "RuleDetailPanel.h"

#include "CardParts.h"
#include "DetailLook.h"
#include "DetailRows.h"
#include "DetailValues.h"
#include "DisplayName.h"

#include "scan/BuiltinRules.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

namespace lumabroom {

using namespace CardParts;

RuleDetailPanel::RuleDetailPanel(AppModel& model, std::string ruleID, QWidget* parent)
    : QWidget(parent),
      model_(model),
      ruleID_(std::move(ruleID)),
      scroll_(new QScrollArea(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroll_);
    scroll_->setWidgetResizable(true);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAccessibleName(QStringLiteral("rule-detail"));

    for (auto signal :
         {&AppModel::resultsChanged, &AppModel::selectedEntryIDsChanged, &AppModel::isBusyChanged,
          &AppModel::runningCommandRuleIDChanged, &AppModel::topSessionsChanged, &AppModel::isLoadingTopSessionsChanged,
          &AppModel::worktreesChanged, &AppModel::isLoadingWorktreesChanged, &AppModel::removingWorktreeIDChanged,
          &AppModel::pruningTargetChanged, &AppModel::dockerInventoryChanged, &AppModel::isLoadingInventoryChanged,
          &AppModel::isStartingOrbStackChanged, &AppModel::isRefiningOrbStackChanged})
        connect(&model_, signal, this, &RuleDetailPanel::scheduleRebuild);

    rebuild();
    startLoads();
}

void RuleDetailPanel::showRule(std::string ruleID) {
    if (dialog_) {
        QMessageBox* open = dialog_;
        dialog_ = nullptr;
        open->disconnect(this);
        open->close();
    }
    ruleID_ = std::move(ruleID);
    state_ = {};
    rebuild();
    scroll_->verticalScrollBar()->setValue(0);
    startLoads();
}

std::optional<RuleScanResult> RuleDetailPanel::current() const {
    if (const RuleScanResult* result = model_.result(ruleID_)) return *result;
    for (const auto* rules : {&model_.scanRules(), &BuiltinRules::all()})
        for (const CleanRule& rule : *rules)
            if (rule.id == ruleID_) return RuleScanResult{rule, {}};
    return std::nullopt;
}

void RuleDetailPanel::startLoads() {
    const std::optional<RuleScanResult> result = current();
    const bool docker = result && DetailValues::hasDockerBreakdown(*result);
    if (ruleID_ == "tool.orbstack") {
        model_.refineOrbStackIfNeeded(false);
        model_.loadDockerInventory(false);
    } else if (docker) {
        model_.loadDockerInventory(false);
    }
    if (ruleID_ == "tool.codex-worktrees") model_.loadWorktrees(false);
    if (ruleID_ == "code.claude-sessions" || ruleID_ == "code.codex-sessions") model_.loadTopSessions(ruleID_);
}

void RuleDetailPanel::scheduleRebuild() {
    if (rebuildPending_) return;
    rebuildPending_ = true;
    QTimer::singleShot(0, this, [this] {
        if (rebuildPending_) rebuild();
    });
}

void RuleDetailPanel::rebuild() {
    rebuildPending_ = false;
    const int scrolled = scroll_->verticalScrollBar()->value();
    entriesCard_ = nullptr;
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(16, 12, 16, 16);
    column->setSpacing(12);

    if (const std::optional<RuleScanResult> found = current()) {
        const RuleScanResult& result = *found;
        const CleanRule& rule = result.rule;
        const bool docker = DetailValues::hasDockerBreakdown(result);
        const std::optional<MaintenanceCommand> command = MaintenanceCommands::command(rule.id);
        column->addWidget(backRow(result));
        column->addWidget(header(result));

        if (rule.id == "tool.orbstack" && model_.isRefiningOrbStack() && !docker)
            column->addWidget(orbStackLoadingBanner());
        else if (rule.id == "tool.orbstack" && !docker) column->addWidget(orbStackOffBanner());
        else if (rule.safety == SafetyLevel::reportOnly && !docker && rule.id != "tool.ollama"
                 && rule.id != "tool.codex-worktrees" && rule.id != "code.claude-sessions" && !command)
            column->addWidget(reportOnlyBox(result));

        if (command) column->addWidget(maintenanceCard(*command));

        if (rule.id == "tool.codex-worktrees") {
            if (QWidget* section = worktreeSection(result)) column->addWidget(section);
        } else if (docker) {
            column->addWidget(dockerActionsCard(result));
            if (QWidget* list = inventory()) column->addWidget(list);
        } else if (result.entries.empty()) {
            column->addWidget(emptyState("此项没有缓存", "目录不存在或已被清理"));
        } else {
            if (rule.safety != SafetyLevel::reportOnly) column->addWidget(selectionBar(result));
            column->addWidget(entriesCard(result));
        }

        if ((rule.id == "code.claude-sessions" || rule.id == "code.codex-sessions") && !result.entries.empty()) {
            if (QWidget* bar = topSessionsBar()) column->addWidget(bar);
            column->addWidget(topSessionsCard());
        }
    }
    column->addStretch();

    // The old column may hold the widget whose signal led here: it goes once control is back in
    // the event loop.
    if (QWidget* old = scroll_->takeWidget()) old->deleteLater();
    scroll_->setWidget(content);
    // Built apart from the window, the column may have been polished with the application's
    // palette, which its cards would then show in place of the window's scheme.
    content->setPalette(palette());
    const bool toEntries = std::exchange(scrollToEntries_, false);
    QTimer::singleShot(0, this, [this, scrolled, toEntries, card = QPointer<QWidget>(entriesCard_)] {
        if (toEntries && card) scroll_->verticalScrollBar()->setValue(card->y());
        else scroll_->verticalScrollBar()->setValue(scrolled);
    });
}

void RuleDetailPanel::keyPressEvent(QKeyEvent* event) {
    // Escape reaches the panel from whichever of its controls has the focus.
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) goBack();
    else QWidget::keyPressEvent(event);
}

void RuleDetailPanel::goBack() {
    if (const std::optional<RuleScanResult> result = current()) model_.setRoute(Route::category(result->rule.category));
}

QWidget* RuleDetailPanel::backRow(const RuleScanResult& result) {
    QPushButton* back = button(QStringLiteral("‹ ") + q(displayName(result.rule.category)), nullptr);
    back->setAccessibleName(q(displayName(result.rule.category)));
    back->setFlat(true);
    connect(back, &QPushButton::clicked, this, &RuleDetailPanel::goBack);
    return hbox(nullptr, {back}, true);
}

QWidget* RuleDetailPanel::header(const RuleScanResult& result) {
    const CleanRule& rule = result.rule;
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(DetailLook::ruleIconTile(rule, row), 0, Qt::AlignTop);

    QLabel* name =
        DetailRows::elided(q(rule.name()), Qt::ElideRight, nullptr, QStringLiteral("font-size:17px;font-weight:600;"));
    name->setToolTip(q(rule.name()));
    QLabel* note = label(q(rule.note()), nullptr, kSecondary);
    note->setWordWrap(true);
    QLabel* paths = nullptr;
    if (!rule.paths.empty()) {
        QStringList all;
        for (const std::string& p : rule.paths) all << q(p);
        paths = label(all.join(QStringLiteral("   ")), nullptr, kTertiary);
        paths->setToolTip(all.join(QLatin1Char('\n')));
        paths->setWordWrap(true);
    }
    layout->addWidget(
        vbox(row, {hbox(nullptr, {name, DetailLook::safetyBadge(rule.safety, nullptr)}, true), note, paths}), 1);

    const std::int64_t total = result.totalSize();
    QLabel* size = label(q(bytes(total)), nullptr,
                         QStringLiteral("font-size:28px;font-weight:bold;color:%1;")
                             .arg(total >= 1 ? DetailLook::accent().name() : QStringLiteral("palette(mid)")));
    size->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    size->setAlignment(Qt::AlignRight);
    QLabel* count = label(counted("%n 项", static_cast<std::int64_t>(result.entries.size())), nullptr, kSecondary);
    count->setAlignment(Qt::AlignRight);
    layout->addWidget(vbox(row, {size, count}), 0, Qt::AlignTop);
    return row;
}

bool RuleDetailPanel::light() const { return palette().color(QPalette::Window).lightness() > 128; }

QWidget* RuleDetailPanel::emptyState(std::string_view title, std::string_view description) {
    QLabel* icon = label(QStringLiteral("✦"), nullptr, QStringLiteral("font-size:28px;color:palette(mid);"));
    QLabel* heading = label(text(title), nullptr, QStringLiteral("font-weight:600;"));
    QLabel* detail = label(text(description), nullptr, kSecondary);
    for (QLabel* l : {icon, heading, detail}) l->setAlignment(Qt::AlignCenter);
    return vbox(nullptr, {icon, heading, detail});
}

} // namespace lumabroom
