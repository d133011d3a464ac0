#include "RuleDetailPanel.h"

#include "DetailDialogs.h"
#include "DetailRows.h"
#include "DetailText.h"
#include "DetailValues.h"
#include "DisplayName.h"
#include "StandIns.h"

#include "scan/BuiltinRules.h"
#include "text/Formatting.h"
#include "text/Localization.h"
#include "tools/OllamaModelLister.h"
#include "tools/SimulatorDevices.h"

#include <QCheckBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QKeyEvent>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>

namespace lumabroom {

namespace {

using DetailText::counted;
using DetailText::formatted;
using DetailText::text;
using DetailRows::label;

constexpr auto kSecondary = "color:palette(placeholder-text);";
constexpr auto kTertiary = "color:palette(mid);font-size:11px;";
using DetailRows::Icon;

QString q(const std::string& s) { return QString::fromStdString(s); }
std::string bytes(std::int64_t n) { return Formatting::bytes(n); }
std::string number(std::int64_t n) { return std::to_string(n); }

QVBoxLayout* columnOf(QWidget* w) { return static_cast<QVBoxLayout*>(w->layout()); }

QPushButton* button(const QString& text, QWidget* parent) {
    // A literal "&" would turn into a mnemonic.
    auto* b = new QPushButton(QString(text).replace(QLatin1Char('&'), QStringLiteral("&&")), parent);
    b->setAccessibleName(text);
    b->setAutoDefault(false);
    return b;
}

// Rows of a card with a divider between them and none behind the last.
void addRows(QWidget* card, const std::vector<QWidget*>& rows, int indent = 0) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (i > 0) columnOf(card)->addWidget(DetailRows::divider(card, indent));
        columnOf(card)->addWidget(rows[i]);
    }
}

QWidget* hbox(QWidget* parent, std::initializer_list<QWidget*> widgets, bool stretchAtEnd = false) {
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget* w : widgets) {
        if (w) {
            w->setParent(row);
            layout->addWidget(w);
        }
    }
    if (stretchAtEnd) layout->addStretch();
    return row;
}

QWidget* vbox(QWidget* parent, std::initializer_list<QWidget*> widgets) {
    auto* column = new QWidget(parent);
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(1);
    for (QWidget* w : widgets) {
        if (w) {
            w->setParent(column);
            layout->addWidget(w);
        }
    }
    return column;
}

QLabel* capsule(const QString& text, const QColor& colour, double opacity, QWidget* parent) {
    QColor background = colour;
    background.setAlphaF(static_cast<float>(opacity));
    return label(text, parent,
                 QStringLiteral("color:%1;background:%2;border-radius:7px;padding:0 6px;")
                     .arg(colour.name(), background.name(QColor::HexArgb)));
}

QWidget* folderIcon(QWidget* parent) {
    auto* icon = new QLabel(parent);
    icon->setPixmap(DetailRows::icon(Icon::folder).pixmap(16, 16));
    return icon;
}

QWidget* tick(bool reportOnly, bool checked, const QString& name, std::function<void()> onToggle, QWidget* parent) {
    if (reportOnly) {
        QLabel* dot = label(QStringLiteral("•"), parent, kTertiary);
        dot->setFixedWidth(18);
        return dot;
    }
    auto* box = new QCheckBox(parent);
    box->setChecked(checked);
    box->setAccessibleName(name);
    QObject::connect(box, &QCheckBox::clicked, box, [onToggle = std::move(onToggle)] { onToggle(); });
    return box;
}

QToolButton* revealButton(BarRow* row, const std::filesystem::path& path) {
    QToolButton* reveal = DetailRows::iconButton(Icon::reveal, text("在 Finder 中显示"), row);
    QObject::connect(reveal, &QToolButton::clicked, reveal, [path] { StandIns::reveal(path); });
    row->setRevealButton(reveal);
    return reveal;
}

std::vector<BarRow::MenuItem> pathMenu(const std::filesystem::path& path) {
    return {{text("在 Finder 中显示"), [path] { StandIns::reveal(path); }},
            {text("复制路径"), [path] { StandIns::copyToClipboard(path.string()); }}};
}

} // namespace

RuleDetailPanel::RuleDetailPanel(AppModel& model, std::string ruleID, QWidget* parent)
    : QWidget(parent), model_(model), ruleID_(std::move(ruleID)), scroll_(new QScrollArea(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroll_);
    scroll_->setWidgetResizable(true);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAccessibleName(QStringLiteral("rule-detail"));

    for (auto signal : {&AppModel::resultsChanged, &AppModel::selectedEntryIDsChanged, &AppModel::isBusyChanged,
                        &AppModel::runningCommandRuleIDChanged, &AppModel::topSessionsChanged,
                        &AppModel::isLoadingTopSessionsChanged, &AppModel::worktreesChanged,
                        &AppModel::isLoadingWorktreesChanged, &AppModel::removingWorktreeIDChanged,
                        &AppModel::pruningTargetChanged, &AppModel::dockerInventoryChanged,
                        &AppModel::isLoadingInventoryChanged, &AppModel::isStartingOrbStackChanged,
                        &AppModel::isRefiningOrbStackChanged})
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
        else if (rule.id == "tool.orbstack" && !docker)
            column->addWidget(orbStackOffBanner());
        else if (rule.safety == SafetyLevel::reportOnly && !docker && rule.id != "tool.ollama" &&
                 rule.id != "tool.codex-worktrees" && rule.id != "code.claude-sessions" && !command)
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
    if (const std::optional<RuleScanResult> result = current())
        model_.setRoute(Route::category(result->rule.category));
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
    layout->addWidget(StandIns::ruleIconTile(rule, row), 0, Qt::AlignTop);

    QLabel* name = label(q(rule.name()), nullptr, QStringLiteral("font-size:17px;font-weight:600;"));
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
    layout->addWidget(vbox(row, {hbox(nullptr, {name, StandIns::safetyBadge(rule.safety, nullptr)}, true), note, paths}), 1);

    const std::int64_t total = result.totalSize();
    QLabel* size = label(q(bytes(total)), nullptr,
                         QStringLiteral("font-size:28px;font-weight:bold;color:%1;")
                             .arg(total >= 1 ? StandIns::accent().name() : QStringLiteral("palette(mid)")));
    size->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    size->setAlignment(Qt::AlignRight);
    QLabel* count = label(counted("%n 项", static_cast<std::int64_t>(result.entries.size())), nullptr, kSecondary);
    count->setAlignment(Qt::AlignRight);
    layout->addWidget(vbox(row, {size, count}), 0, Qt::AlignTop);
    return row;
}

QWidget* RuleDetailPanel::orbStackLoadingBanner() {
    QWidget* card = DetailRows::card(nullptr, StandIns::orange());
    columnOf(card)->addWidget(hbox(card, {DetailRows::spinner(text("正在读取 Docker 占用分解…"), nullptr),
                                          vbox(nullptr, {label(text("正在读取 Docker 占用分解…"), nullptr),
                                                         label(text("docker system df 需要几秒,镜像/容器/数据卷越多越慢"),
                                                               nullptr, kSecondary)})},
                                   true));
    return card;
}

QWidget* RuleDetailPanel::orbStackOffBanner() {
    QWidget* card = DetailRows::card(nullptr, StandIns::orange());
    QLabel* detail = label(text("虚拟磁盘是 Linux 文件系统镜像,macOS 无法直接解析内部构成;启动后会自动细分并可执行清理"), nullptr,
                           kSecondary);
    detail->setWordWrap(true);
    QWidget* end;
    if (model_.isStartingOrbStack()) {
        end = hbox(nullptr, {DetailRows::spinner(text("启动中…"), nullptr), label(text("启动中…"), nullptr)});
    } else {
        QPushButton* start = button(text("启动 OrbStack"), nullptr);
        connect(start, &QPushButton::clicked, this, [this] { model_.startOrbStack(); });
        end = start;
    }
    auto* row = hbox(card, {label(QStringLiteral("☾"), nullptr, QStringLiteral("color:%1;").arg(StandIns::orange().name())),
                            vbox(nullptr, {label(text("OrbStack 未在运行"), nullptr), detail})});
    static_cast<QHBoxLayout*>(row->layout())->setStretch(1, 1);
    end->setParent(row);
    row->layout()->addWidget(end);
    columnOf(card)->addWidget(row);
    return card;
}

QWidget* RuleDetailPanel::reportOnlyBox(const RuleScanResult& result) {
    QWidget* card = DetailRows::card(nullptr);
    QLabel* note = label(q(result.rule.note()), nullptr, kSecondary);
    note->setWordWrap(true);
    auto* row = hbox(card, {label(QStringLiteral("ⓘ"), nullptr, QStringLiteral("color:%1;").arg(StandIns::accent().name())),
                            vbox(nullptr, {label(text("此项只统计大小,不直接删除"), nullptr, QStringLiteral("font-weight:500;")),
                                           note})});
    static_cast<QHBoxLayout*>(row->layout())->setStretch(1, 1);
    if (const std::optional<std::string> command = DetailValues::embeddedCommand(result.rule.note())) {
        QPushButton* copy = button(text("复制命令"), row);
        copy->setIcon(DetailRows::icon(Icon::copy));
        connect(copy, &QPushButton::clicked, this, [command = *command] { StandIns::copyToClipboard(command); });
        row->layout()->addWidget(copy);
    }
    columnOf(card)->addWidget(row);
    return card;
}

QWidget* RuleDetailPanel::maintenanceCard(const MaintenanceCommand& command) {
    QWidget* card = DetailRows::card(nullptr);
    QLabel* line = label(q(command.command), nullptr);
    line->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    line->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QLabel* detail = label(q(command.detail), nullptr, kSecondary);
    detail->setWordWrap(true);
    auto* row = hbox(card, {label(QStringLiteral(">_"), nullptr), vbox(nullptr, {line, detail})});
    static_cast<QHBoxLayout*>(row->layout())->setStretch(1, 1);
    if (model_.runningCommandRuleID() == command.id) {
        row->layout()->addWidget(DetailRows::spinner(text("执行中…"), row));
        row->layout()->addWidget(label(text("执行中…"), row));
    } else {
        QPushButton* run = button(text("运行"), row);
        run->setEnabled(!model_.isBusy() && !model_.runningCommandRuleID());
        connect(run, &QPushButton::clicked, this, [this, command] { model_.runMaintenance(command); });
        row->layout()->addWidget(run);
    }
    columnOf(card)->addWidget(row);
    return card;
}

QWidget* RuleDetailPanel::emptyState(std::string_view title, std::string_view description) {
    QLabel* icon = label(QStringLiteral("✦"), nullptr, QStringLiteral("font-size:28px;color:palette(mid);"));
    QLabel* heading = label(text(title), nullptr, QStringLiteral("font-weight:600;"));
    QLabel* detail = label(text(description), nullptr, kSecondary);
    for (QLabel* l : {icon, heading, detail}) l->setAlignment(Qt::AlignCenter);
    return vbox(nullptr, {icon, heading, detail});
}

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
    QLabel* summary = label(counted("已选 %1/%n 项 · %2", static_cast<std::int64_t>(result.entries.size()),
                                    {number(count), bytes(size)}),
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
        QPushButton* unfold = button(QStringLiteral("⌄ ") + counted("展开其余 %n 项 · %1",
                                                                   static_cast<std::int64_t>(visible.size() - shown), {bytes(rest)}),
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
    auto* row = new BarRow(StandIns::ruleColor(result.rule), DetailValues::fraction(entry.size, maxSize), nullptr);
    row->setObjectName(QStringLiteral("entry-row"));
    row->setAccessibleName(name);
    const std::string id = entry.id();
    auto toggle = [this, id] {
        if (const RuleScanResult* r = model_.result(ruleID_)) model_.toggleEntry(*r, id);
    };
    if (!reportOnly) row->setOnClick(toggle);
    row->content()->addWidget(tick(reportOnly, model_.isSelected(id), name, toggle, row));
    QLabel* title = label(name, row);
    title->setToolTip(q(entry.url.string()));
    title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
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

QWidget* RuleDetailPanel::dockerActionsCard(const RuleScanResult& result) {
    QWidget* card = DetailRows::card(nullptr);
    columnOf(card)->addWidget(label(text("深度清理"), card, QStringLiteral("font-weight:600;")));
    std::vector<QWidget*> rows;
    for (DockerPruneTarget target : allDockerPruneTargets) {
        auto* row = hbox(nullptr, {vbox(nullptr, {label(q(title(target)), nullptr), label(q(detail(target)), nullptr, kTertiary)})});
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
        return hbox(nullptr, {DetailRows::spinner(text("正在读取镜像/容器/数据卷清单…"), nullptr),
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
    QPushButton* header = button(QString(open ? QStringLiteral("▾ ") : QStringLiteral("▸ ")) + text(title) +
                                     QStringLiteral("    ") +
                                     counted("%n 个 · %1", static_cast<std::int64_t>(items.size()), {bytes(total)}),
                                 card);
    header->setAccessibleName(text(title));
    header->setFlat(true);
    header->setStyleSheet(QStringLiteral("text-align:left;"));
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
        auto* row = hbox(nullptr, {vbox(nullptr, {label(q(item.name), nullptr), label(q(item.detail), nullptr, kTertiary)}),
                                   size, trash});
        static_cast<QHBoxLayout*>(row->layout())->setStretch(0, 1);
        rows.push_back(row);
    }
    addRows(card, rows);
    return card;
}

QWidget* RuleDetailPanel::worktreeSection(const RuleScanResult& result) {
    const auto& worktrees = model_.worktrees();
    if (!worktrees) {
        if (!model_.isLoadingWorktrees()) return nullptr;
        return hbox(nullptr, {DetailRows::spinner(text("正在检查各 worktree 的 git 状态…"), nullptr),
                              label(text("正在检查各 worktree 的 git 状态…"), nullptr, kSecondary)},
                    true);
    }
    if (worktrees->empty()) return emptyState("没有派生 worktree", "会话库里的主仓都没有登记 worktree");

    auto* section = vbox(nullptr, {});
    std::vector<WorktreeInfo> safe, risky;
    for (const WorktreeInfo& w : *worktrees) (w.isRisky() ? risky : safe).push_back(w);
    auto* chips = hbox(section, {}, false);
    if (!safe.empty())
        chips->layout()->addWidget(capsule(counted("可安全删除 %n 个 · %1", static_cast<std::int64_t>(safe.size()),
                                                   {bytes(DetailValues::worktreeTotal(safe))}),
                                           StandIns::green(), 0.16, chips));
    if (!risky.empty())
        chips->layout()->addWidget(capsule(counted("有丢失风险 %n 个 · %1", static_cast<std::int64_t>(risky.size()),
                                                   {bytes(DetailValues::worktreeTotal(risky))}),
                                           StandIns::orange(), 0.16, chips));
    static_cast<QHBoxLayout*>(chips->layout())->addStretch();
    section->layout()->addWidget(chips);

    const std::int64_t maxSize = DetailValues::largestWorktree(*worktrees);
    for (const DetailValues::WorktreeGroup& group : DetailValues::worktreeGroups(*worktrees)) {
        QWidget* card = DetailRows::card(section);
        QLabel* repoName = label(q(std::filesystem::path(group.repoPath).filename().string()), nullptr,
                                 QStringLiteral("font-weight:600;"));
        QLabel* repoPath = label(q(DetailValues::withTilde(group.repoPath)), nullptr, kTertiary);
        repoPath->setToolTip(q(group.repoPath));
        repoPath->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        QLabel* total = label(counted("%n 个 · %1", static_cast<std::int64_t>(group.items.size()),
                                      {bytes(DetailValues::worktreeTotal(group.items))}),
                              nullptr, kSecondary);
        auto* header = new BarRow(QColor(), 0, card);
        for (QWidget* w : {folderIcon(header), vbox(nullptr, {repoName, repoPath}),
                           static_cast<QWidget*>(total)}) {
            w->setParent(header);
            header->content()->addWidget(w);
        }
        header->content()->setStretch(1, 1);
        header->setMenu({{text("在 Finder 中显示主仓"), [path = group.repoPath] { StandIns::reveal(path); }}});
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
    auto* row = new BarRow(StandIns::ruleColor(result.rule), DetailValues::fraction(info.size.value_or(0), maxSize), nullptr);
    row->setObjectName(QStringLiteral("worktree-row"));
    row->setAccessibleName(q(info.repoName));
    row->content()->addWidget(label(QStringLiteral("↳"), row, kTertiary));

    auto* first = hbox(nullptr, {label(q(info.repoName), nullptr, QStringLiteral("font-weight:500;"))});
    QLabel* chip = info.branch ? capsule(QString(), QColor(Qt::gray), 0, first)
                               : capsule(QStringLiteral("⎇ ") + text("无分支"), StandIns::orange(), 0, first);
    if (info.branch) // one line, cut in the middle
        chip->setText(chip->fontMetrics().elidedText(QStringLiteral("⎇ ") + q(*info.branch), Qt::ElideMiddle, 180));
    chip->setToolTip(info.branch ? formatted("分支 %1 不会被删除,它上面的提交都还在", {*info.branch})
                                 : text("游离检出:HEAD 直接指着某个提交,没有分支拴着它"));
    chip->setObjectName(QStringLiteral("branch-chip"));
    first->layout()->addWidget(chip);
    auto addBadge = [&](const QString& text, const QString& tip, const QColor& colour) {
        QLabel* badge = capsule(text, colour, 0.18, first);
        badge->setToolTip(tip);
        badge->setObjectName(QStringLiteral("badge"));
        first->layout()->addWidget(badge);
    };
    if (info.dirtyFiles > 0)
        addBadge(counted("%n 个改动没提交", info.dirtyFiles), text("这些文件改了还没 commit,删掉 worktree 就没了"),
                 StandIns::orange());
    if (info.orphanCommits > 0)
        addBadge(counted("%n 个提交只在这里", info.orphanCommits),
                 text("这些提交不在任何分支和远端上,删掉之后没有任何东西指向它们,找不回来"), StandIns::orange());
    if (!info.isRisky())
        addBadge(text("可安全删除"), text("没有没提交的改动,提交也都在分支上——分支不会被删,所以什么都不会丢"),
                 StandIns::green());
    static_cast<QHBoxLayout*>(first->layout())->addStretch();

    auto* second = hbox(nullptr, {});
    QLabel* path = label(q(DetailValues::withTilde(info.path.string())), second, kTertiary);
    path->setToolTip(q(info.path.string()));
    path->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    static_cast<QHBoxLayout*>(second->layout())->addWidget(path, 1);
    if (info.lastModified) {
        QLabel* age = label(QStringLiteral("· ") + q(Formatting::age(*info.lastModified, std::chrono::system_clock::now())),
                            second, kTertiary);
        age->setToolTip(text("最后一次有文件改动的时间"));
        second->layout()->addWidget(age);
    }
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
    row->setMenu({{text("在 Finder 中显示"), [p = info.path] { StandIns::reveal(p); }}});
    return row;
}

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
    const bool all = std::ranges::all_of(*sessions, [this](const ScanEntry& e) { return state_.selectedSessionIDs.contains(e.id()); });
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
        QLabel* file = label(q(entry.url.filename().string()), nullptr, kTertiary);
        file->setToolTip(q(entry.url.string()));
        file->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        row->content()->addWidget(vbox(row, {label(name, nullptr), file}), 1);
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

void RuleDetailPanel::askEntryDelete(const ScanEntry& entry) {
    state_.pendingModelDelete = entry;
    dialog_ = DetailDialogs::confirm(
        this, formatted("删除 %1?", {displayName(entry)}), text(DetailValues::entryDeleteMessageKey(ruleID_)), text("删除"),
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

void RuleDetailPanel::askSessionDelete(const ScanEntry& entry) {
    state_.pendingSessionDelete = entry;
    dialog_ = DetailDialogs::confirm(
        this, formatted("删除 %1?", {displayName(entry)}), text("将该会话文件移到废纸篓;之后无法在对应工具里 resume 这份对话。"),
        text("删除"),
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
