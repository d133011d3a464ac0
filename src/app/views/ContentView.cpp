#include "ContentView.h"

#include "AnimatedBytes.h"
#include "BrandMark.h"
#include "DiskBar.h"
#include "RuleCheckbox.h"
#include "RuleDetailPanel.h"
#include "RuleIconTile.h"
#include "SafetyBadge.h"
#include "SunburstWidget.h"
#include "Symbols.h"
#include "Theme.h"
#include "host/Platform.h"
#include "model/AppModel.h"
#include "model/AppText.h"
#include "model/DisplayName.h"
#include "text/Formatting.h"
#include "update/Updater.h"

#include <QActionGroup>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QStackedWidget>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace lumabroom {
namespace {

QString text(std::string_view key) { return QString::fromStdString(AppText::text(key)); }
QString qs(const std::string& s) { return QString::fromStdString(s); }
QString bytes(std::int64_t count) { return qs(Formatting::bytes(count)); }
// A button's text shows "&" only doubled; single, it marks a mnemonic ("Xcode & Simulators").
QString buttonText(QString text) { return text.replace(QLatin1Char('&'), QStringLiteral("&&")); }

QString rgba(QColor c) {
    return QStringLiteral("rgba(%1,%2,%3,%4)").arg(c.red()).arg(c.green()).arg(c.blue()).arg(c.alphaF(), 0, 'f', 3);
}

QLabel* label(const QString& content, QWidget* parent) {
    auto* l = new QLabel(content, parent);
    // A label inside a row button lets the press reach the button.
    l->setAttribute(Qt::WA_TransparentForMouseEvents);
    return l;
}

// A symbol in a colour of the scheme this view was built for; it does not depend on the palette
// that reaches it through the style sheet.
QLabel* symbolLabel(std::string_view symbol, const QColor& colour, int side, QWidget* parent) {
    auto* l = label({}, parent);
    l->setPixmap(Symbols::icon(symbol, colour).pixmap(side, side));
    l->setFixedSize(side, side);
    return l;
}

QPushButton* roundButton(std::string_view symbol, const QColor& colour, const QString& tip, QWidget* parent) {
    auto* b = new QPushButton(parent);
    b->setIcon(Symbols::icon(symbol, colour));
    b->setIconSize(QSize(16, 16));
    b->setToolTip(tip);
    b->setAccessibleName(tip);
    b->setFixedSize(34, 34);
    b->setProperty("kind", QStringLiteral("round"));
    return b;
}

// A row of the list that is one button across, with its pieces laid out inside.
QPushButton* rowButton(const QString& name, QWidget* parent, QHBoxLayout*& row) {
    auto* b = new QPushButton(parent);
    b->setAccessibleName(name);
    b->setProperty("kind", QStringLiteral("row"));
    b->setMinimumHeight(40);
    b->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    row = new QHBoxLayout(b);
    row->setContentsMargins(12, 6, 12, 6);
    row->setSpacing(8);
    return b;
}

} // namespace

ContentView::ContentView(AppModel& model, Updater* updater, bool light, QWidget* parent)
    : QWidget(parent),
      model_(model),
      updater_(updater),
      light_(light) {
    setObjectName(QStringLiteral("content"));
    setMinimumSize(1080, 680);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeTopBar());

    auto* row = new QHBoxLayout;
    row->setContentsMargins(28, 0, 28, 0);
    row->setSpacing(28);
    chart_ = new SunburstWidget(this);
    chart_->setObjectName(QStringLiteral("chart"));
    chart_->setProvider([this] {
        ChartInput in;
        in.groups = model_.visibleGroups();
        in.results = model_.results();
        in.isSelected = [this](const std::string& id) { return model_.isSelected(id); };
        in.route = model_.route();
        in.isBusy = model_.isBusy();
        in.scanProgressText = model_.scanProgressText();
        in.palette = SunburstPalette::stored();
        return in;
    });
    chart_->setLight(isLight());
    connect(chart_, &SunburstWidget::tapped, this, &ContentView::apply);
    row->addWidget(chart_, 1);

    rightPanel_ = new QStackedWidget(this);
    rightPanel_->setObjectName(QStringLiteral("rightPanel"));
    rightPanel_->setFixedWidth(540);
    panel_ = new QScrollArea(rightPanel_);
    rightPanel_->addWidget(panel_);
    panel_->setWidgetResizable(true);
    panel_->setFrameShape(QFrame::NoFrame);
    panel_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    panel_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    panel_->setFocusPolicy(Qt::NoFocus);
    // The window's gradient shows through the list rather than a plain fill.
    panel_->viewport()->setAutoFillBackground(false);
    row->addWidget(rightPanel_);
    column->addLayout(row, 1);

    auto* bottom = new QHBoxLayout;
    bottom->setContentsMargins(28, 12, 28, 16);
    bottom->addWidget(makeBottomBar());
    column->addLayout(bottom);

    // The only shortcuts besides the rescan's: they stand for the buttons they press.
    auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(escape, &QShortcut::activated, this, &ContentView::goBack);
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* ret = new QShortcut(QKeySequence(key), this);
        connect(ret, &QShortcut::activated, this, [this] {
            if (cleanButton_->isEnabled()) cleanButton_->click();
        });
    }

    for (const auto signal :
         {&AppModel::resultsChanged, &AppModel::selectedEntryIDsChanged, &AppModel::isBusyChanged,
          &AppModel::routeChanged, &AppModel::showEmptyRulesChanged, &AppModel::scannedRuleCountChanged,
          &AppModel::diskSpaceChanged, &AppModel::collapsedCategoriesChanged, &AppModel::lastSummaryChanged})
        connect(&model_, signal, this, &ContentView::scheduleRefresh);
    refresh();

    auto* options = findChild<QToolButton*>(QStringLiteral("options"));
    setTabOrder(rescanButton_, options);
    setTabOrder(options, chart_);
}

QWidget* ContentView::makeTopBar() {
    auto* bar = new QWidget(this);
    bar->setObjectName(QStringLiteral("topBar"));
    bar->setFixedHeight(58);
    auto* row = new QHBoxLayout(bar);
    // The leading room on macOS keeps clear of the window's own buttons.
    row->setContentsMargins(Platform::isMacOS() ? 84 : 24, 0, 24, 0);
    row->setSpacing(10);

    auto* brand = new BrandMark(30, bar);
    brand->setObjectName(QStringLiteral("brand"));
    brand->setAccessibleName(QStringLiteral("Lumabroom"));
    row->addWidget(brand);
    auto* titles = new QVBoxLayout;
    titles->setSpacing(0);
    auto* title = new QLabel(text("Lumabroom"), bar);
    QFont bold = title->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.15);
    title->setFont(bold);
    auto* caption = new QLabel(text("开发者缓存清理"), bar);
    caption->setObjectName(QStringLiteral("secondary"));
    titles->addStretch(1);
    titles->addWidget(title);
    titles->addWidget(caption);
    titles->addStretch(1);
    row->addLayout(titles);
    row->addStretch(1);

    const QKeySequence rescanKey(Qt::CTRL | Qt::Key_R);
    rescanButton_ = roundButton(
        "arrow.clockwise", Theme::of(!isLight()).primary,
        qs(AppText::formatted("重新扫描 (%1)", {rescanKey.toString(QKeySequence::NativeText).toStdString()})), bar);
    rescanButton_->setObjectName(QStringLiteral("rescan"));
    // Pressed at once rather than after the button's animated click, like Return below.
    auto* rescanShortcut = new QShortcut(rescanKey, this);
    connect(rescanShortcut, &QShortcut::activated, this, [this] {
        if (rescanButton_->isEnabled()) rescanButton_->click();
    });
    connect(rescanButton_, &QPushButton::clicked, &model_, [this] { model_.scan(); });
    row->addWidget(rescanButton_);
    row->addWidget(makeOptionsButton());
    return bar;
}

QToolButton* ContentView::makeOptionsButton() {
    auto* button = new QToolButton(this);
    button->setObjectName(QStringLiteral("options"));
    button->setIcon(Symbols::icon("ellipsis", Theme::of(!isLight()).primary));
    button->setIconSize(QSize(16, 16));
    button->setToolTip(text("选项"));
    button->setAccessibleName(text("选项"));
    button->setFixedSize(34, 34);
    button->setPopupMode(QToolButton::InstantPopup);
    button->setStyleSheet(QStringLiteral("QToolButton::menu-indicator { image: none; width: 0; }"));
    auto* menu = new QMenu(button);
    menu->setObjectName(QStringLiteral("optionsMenu"));
    // A popup is a window of its own and would take the application's palette.
    menu->setPalette(window()->palette());

    emptyRulesAction_ = menu->addAction(text("显示空项"));
    emptyRulesAction_->setCheckable(true);
    emptyRulesAction_->setChecked(model_.showEmptyRules());
    connect(emptyRulesAction_, &QAction::toggled, &model_, [this](bool on) { model_.setShowEmptyRules(on); });
    menu->addSeparator();

    const auto picker = [this, menu](const QString& title) {
        auto* sub = menu->addMenu(title);
        sub->setPalette(window()->palette());
        auto* group = new QActionGroup(sub);
        group->setExclusive(true);
        return std::pair{sub, group};
    };
    const auto choice = [](QMenu* sub, QActionGroup* group, const std::string& name, bool checked) {
        auto* action = sub->addAction(qs(name));
        action->setCheckable(true);
        action->setChecked(checked);
        group->addAction(action);
        return action;
    };

    auto [appearanceMenu, appearances] = picker(text("外观"));
    const auto current = Appearance::stored();
    for (const AppearanceMode mode : allAppearanceModes) {
        auto* action = choice(appearanceMenu, appearances, Appearance::displayName(mode), mode == current);
        connect(action, &QAction::triggered, this, [this, mode] { Q_EMIT appearanceChosen(mode); });
    }

    auto [paletteMenu, palettes] = picker(text("图表配色"));
    const auto palette = SunburstPalette::stored();
    for (const auto& [value, key] :
         {std::pair{ChartPalette::hues, "彩色"}, std::pair{ChartPalette::colorBlindSafe, "色盲友好"}}) {
        auto* action = choice(paletteMenu, palettes, AppText::text(key), value == palette);
        connect(action, &QAction::triggered, this, [this, value] {
            Q_EMIT paletteChosen(value);
            chart_->update();
            chart_->refresh();
        });
    }

    auto [languageMenu, languages] = picker(text("语言"));
    const auto language = Localization::language();
    for (const AppLanguage value : allAppLanguages) {
        auto* action = choice(languageMenu, languages, displayName(value), value == language);
        // Queued: the choice rebuilds this view, menu included.
        connect(
            action, &QAction::triggered, this, [this, value] { Q_EMIT languageChosen(value); }, Qt::QueuedConnection);
    }
    menu->addSeparator();

    auto* check = menu->addAction(text("检查更新…"));
    check->setObjectName(QStringLiteral("checkForUpdates"));
    check->setEnabled(updater_ && updater_->canCheckForUpdates());
    if (updater_) {
        connect(updater_, &Updater::canCheckForUpdatesChanged, check, &QAction::setEnabled);
        connect(check, &QAction::triggered, updater_, [this] { updater_->checkForUpdates(); });
    }
    button->setMenu(menu);
    return button;
}

QWidget* ContentView::makeBottomBar() {
    auto* bar = new QFrame(this);
    bar->setObjectName(QStringLiteral("bottomBar"));
    bar->setMaximumWidth(960);
    bar->setMinimumHeight(56);
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(20, 8, 10, 8);
    row->setSpacing(14);

    diskSegment_ = new DiskStatusSegment(bar);
    diskSegment_->setObjectName(QStringLiteral("diskSegment"));
    diskSegment_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred); // it keeps its room first
    row->addWidget(diskSegment_);
    summaryMark_ = symbolLabel("checkmark.circle.fill", Theme::of(!isLight()).named(NamedColor::green), 14, bar);
    row->addWidget(summaryMark_);
    summaryLabel_ = new QLabel(bar);
    summaryLabel_->setObjectName(QStringLiteral("lastSummary"));
    summaryLabel_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    row->addWidget(summaryLabel_, 1);
    row->addStretch(0);
    selectionLabel_ = new QLabel(bar);
    selectionLabel_->setObjectName(QStringLiteral("selectionStatus"));
    row->addWidget(selectionLabel_);
    cleanButton_ = new QPushButton(bar);
    cleanButton_->setObjectName(QStringLiteral("clean"));
    cleanButton_->setIconSize(QSize(14, 14));
    cleanButton_->setMinimumHeight(38);
    cleanButton_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(cleanButton_, &QPushButton::clicked, this, &ContentView::askToClean);
    row->addWidget(cleanButton_);
    return bar;
}

void ContentView::scheduleRefresh() {
    // A scan changes the model once per rule: one rebuild per turn of the event loop is enough.
    if (refreshPending_) return;
    refreshPending_ = true;
    QMetaObject::invokeMethod(this, &ContentView::refresh, Qt::QueuedConnection);
}

void ContentView::refresh() {
    refreshPending_ = false;
    rescanButton_->setEnabled(!model_.isBusy());
    emptyRulesAction_->setChecked(model_.showEmptyRules());
    refreshPanel();
    refreshBottomBar();
    chart_->refresh();
}

void ContentView::refreshPanel() {
    const Route& shown = model_.route();
    if (shown.ruleID() && showDetail(*shown.ruleID())) return;
    if (detail_) {
        rightPanel_->setCurrentWidget(panel_);
        detail_->deleteLater(); // its state starts over at the next rule
        detail_ = nullptr;
    }

    // Keep the focus on the same control across the rebuild.
    const QWidget* focused = window()->focusWidget(); // the window's own, whether or not it is active
    const QString focusName = focused && panel_->isAncestorOf(focused) ? focused->objectName() : QString();
    const int scroll = panel_->verticalScrollBar() ? panel_->verticalScrollBar()->value() : 0;

    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("panelPage"));
    auto* list = new QVBoxLayout(page);
    list->setContentsMargins(0, 0, 0, 0);
    list->setSpacing(6);
    back_ = nullptr;
    const Route& route = model_.route();
    if (route.ruleID()) addEmptyState(*list, "questionmark.folder", text("该项已不存在"), {});
    else fillOverview(*list, route.categoryValue());
    list->addStretch(1);
    panel_->setWidget(page);
    page->setAutoFillBackground(false);
    page->setPalette(window()->palette());
    panel_->verticalScrollBar()->setValue(scroll);

    // Tab goes from the chart down the panel's rows to the bottom bar, as they stand on screen.
    QWidget* previous = chart_;
    QWidget* firstInPanel = nullptr;
    for (QWidget* w : page->findChildren<QWidget*>()) {
        if (!(w->focusPolicy() & Qt::TabFocus)) continue;
        if (!firstInPanel) firstInPanel = w;
        setTabOrder(previous, w);
        previous = w;
    }
    setTabOrder(previous, cleanButton_);

    // The same control again, or, when a press changed the route, the first control of the new panel.
    if (!focusName.isEmpty()) {
        QWidget* again = page->findChild<QWidget*>(focusName);
        if (!again && firstInPanel) again = firstInPanel;
        if (again) again->setFocus();
    }
}

void ContentView::addBackButton(QVBoxLayout& list, const QString& title, Category target) {
    auto* back = new QPushButton(QStringLiteral("‹  ") + buttonText(title), list.parentWidget());
    back->setObjectName(QStringLiteral("back"));
    back->setAccessibleName(title);
    back->setFlat(true);
    back->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    const bool toOverview = title == text("全部分类");
    back_ = [this, toOverview, target] { model_.setRoute(toOverview ? Route::overview() : Route::category(target)); };
    connect(back, &QPushButton::clicked, this, [this] { back_(); });
    list.addWidget(back);
}

void ContentView::addEmptyState(QVBoxLayout& list, const std::string& symbol, const QString& title,
                                const QString& description) {
    auto* box = new QWidget(list.parentWidget());
    box->setObjectName(QStringLiteral("emptyState"));
    box->setAccessibleName(title);
    auto* column = new QVBoxLayout(box);
    column->setContentsMargins(24, 80, 24, 0);
    column->setSpacing(10);
    auto* icon = symbolLabel(symbol, Theme::of(!isLight()).tertiary, 48, box);
    column->addWidget(icon, 0, Qt::AlignHCenter);
    auto* head = new QLabel(title, box);
    head->setObjectName(QStringLiteral("emptyTitle"));
    QFont bold = head->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.3);
    head->setFont(bold);
    head->setAlignment(Qt::AlignCenter);
    column->addWidget(head);
    if (!description.isEmpty()) {
        auto* body = new QLabel(description, box);
        body->setObjectName(QStringLiteral("secondary"));
        body->setWordWrap(true);
        body->setAlignment(Qt::AlignCenter);
        column->addWidget(body);
    }
    list.addWidget(box);
}

void ContentView::fillOverview(QVBoxLayout& list, const Category* filter) {
    QWidget* page = list.parentWidget();
    if (filter) addBackButton(list, text("全部分类"), *filter);
    const auto groups = model_.visibleGroups();
    if (groups.empty()) {
        if (!model_.isBusy())
            addEmptyState(list, "sparkles", text("已经很干净了"),
                          text("没有发现可清理的缓存;可在右上角选项里打开「显示空项」"));
        return;
    }
    const bool light = isLight();
    const Theme& theme = Theme::of(!light);
    const QColor tertiary = theme.tertiary;
    for (const VisibleGroup& group : groups) {
        if (filter && group.category != *filter) continue;
        const bool collapsed = model_.collapsedCategories().contains(group.category);
        const QString name = qs(displayName(group.category));
        QHBoxLayout* row = nullptr;
        auto* header = rowButton(name, page, row);
        header->setObjectName(QStringLiteral("group.") + qs(std::string(rawValue(group.category))));
        header->setProperty("collapsed", collapsed);
        auto* dot = label({}, header);
        dot->setFixedSize(8, 8);
        dot->setStyleSheet(
            QStringLiteral("background:%1;border-radius:4px;")
                .arg(rgba(SunburstPalette::categoryColor(group.category, groups, light, SunburstPalette::stored()))));
        row->addWidget(dot);
        auto* title = label(name, header);
        QFont bold = title->font();
        bold.setBold(true);
        title->setFont(bold);
        row->addWidget(title);
        auto* count = label(qs(AppText::counted("%n 项", static_cast<std::int64_t>(group.results.size()))), header);
        count->setStyleSheet(QStringLiteral("color:%1;").arg(rgba(tertiary)));
        row->addWidget(count);
        if (collapsed) {
            // What is left of the row beside the other pieces, so the line ends in an ellipsis before the total.
            const QFontMetrics metrics(font());
            const QFontMetrics boldMetrics(bold);
            const int room = 540 - 24 - 8 - 5 * 8 - boldMetrics.horizontalAdvance(name)
                             - metrics.horizontalAdvance(count->text())
                             - boldMetrics.horizontalAdvance(bytes(group.total()));
            auto* summary = label(metrics.elidedText(qs(group.summary()), Qt::ElideRight, std::max(room, 0)), header);
            summary->setObjectName(QStringLiteral("groupSummary"));
            summary->setStyleSheet(QStringLiteral("color:%1;").arg(rgba(tertiary)));
            summary->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
            row->addWidget(summary, 1);
        } else {
            row->addStretch(1);
        }
        auto* total = new AnimatedBytes(header);
        // A button's palette need not carry the window's scheme; the number takes it from the theme.
        total->setPalette(theme.palette());
        total->setAttribute(Qt::WA_TransparentForMouseEvents);
        total->setFont(bold);
        total->setBytes(group.total());
        row->addWidget(total);
        const Category category = group.category;
        connect(header, &QPushButton::clicked, &model_, [this, category] { model_.toggleExpansion(category); });
        list.addWidget(header);
        if (collapsed) continue;

        for (const RuleScanResult* result : group.results) {
            const CleanRule& rule = result->rule;
            const std::int64_t size = result->totalSize();
            const RuleSelection selection = model_.selection(*result);
            QHBoxLayout* cardRow = nullptr;
            auto* card = rowButton(qs(rule.name()), page, cardRow);
            card->setObjectName(QStringLiteral("rule.") + qs(rule.id));
            card->setProperty("selected", selection != RuleSelection::none);
            auto* tile = new RuleIconTile(rule, 22, card);
            tile->setAttribute(Qt::WA_TransparentForMouseEvents);
            cardRow->addWidget(tile);
            QStringList tip{qs(rule.note())};
            for (const std::string& path : rule.paths) tip << qs(path);
            auto* name = new QLabel(qs(rule.name()), card); // keeps its tooltip, so it takes the pointer
            name->setToolTip(tip.join(QLatin1Char('\n')));
            cardRow->addWidget(name);
            if (rule.safety != SafetyLevel::safe) {
                auto* badge = new SafetyBadge(rule.safety, card);
                badge->setObjectName(QStringLiteral("safetyBadge"));
                badge->setToolTip(name->toolTip());
                cardRow->addWidget(badge);
            }
            cardRow->addStretch(1);
            auto* sizeLabel = label(bytes(size), card);
            if (size < 1) sizeLabel->setStyleSheet(QStringLiteral("color:%1;").arg(rgba(tertiary)));
            cardRow->addWidget(sizeLabel);

            const RuleCheckbox glyph = RuleCheckbox::of(rule.safety, size, selection);
            auto* box = new QToolButton(card);
            box->setObjectName(QStringLiteral("check.") + qs(rule.id));
            box->setAutoRaise(true);
            QColor colour = glyph.accent ? theme.accentA : theme.secondary;
            colour.setAlphaF(static_cast<float>(glyph.opacity));
            box->setIcon(Symbols::icon(glyph.glyph, colour));
            box->setIconSize(QSize(18, 18));
            box->setProperty("glyph", qs(std::string(glyph.glyph)));
            box->setEnabled(glyph.enabled);
            box->setToolTip(glyph.enabled ? text("勾选/取消整组") : QString());
            box->setAccessibleName(text("勾选/取消整组") + QStringLiteral(" · ") + qs(rule.name()));
            box->setStyleSheet(QStringLiteral("QToolButton{border:none;}"));
            const std::string ruleID = rule.id;
            connect(box, &QToolButton::clicked, &model_, [this, ruleID] {
                if (const RuleScanResult* r = model_.result(ruleID)) model_.toggleRule(*r);
            });
            cardRow->addWidget(box);
            auto* chevron = symbolLabel("chevron.right", tertiary, 12, card);
            cardRow->addWidget(chevron);
            connect(card, &QPushButton::clicked, &model_, [this, ruleID] { model_.setRoute(Route::rule(ruleID)); });
            auto* indented = new QHBoxLayout;
            indented->setContentsMargins(18, 0, 0, 0);
            indented->addWidget(card);
            list.addLayout(indented);
        }
    }
}

bool ContentView::showDetail(const std::string& ruleID) {
    const RuleScanResult* result = model_.result(ruleID);
    if (!result) return false;
    const bool focusInPanel = rightPanel_->isAncestorOf(window()->focusWidget());
    if (!detail_) {
        detail_ = new RuleDetailPanel(model_, ruleID, rightPanel_);
        detail_->setObjectName(QStringLiteral("detail"));
        detail_->setPalette(window()->palette());
        rightPanel_->addWidget(detail_);
        setTabOrder(chart_, detail_);
        setTabOrder(detail_, cleanButton_);
    } else if (detail_->ruleID() != ruleID) {
        detail_->showRule(ruleID);
    }
    rightPanel_->setCurrentWidget(detail_);
    const Category category = result->rule.category;
    back_ = [this, category] { model_.setRoute(Route::category(category)); };
    if (focusInPanel) detail_->setFocus();
    return true;
}

void ContentView::refreshBottomBar() {
    const auto& disk = model_.diskSpace();
    diskSegment_->setVisible(disk.has_value());
    if (disk) {
        const std::int64_t cleanable = model_.directlyCleanableBytes();
        diskSegment_->setValues(*disk, cleanable, model_.totalBytes() - cleanable);
    }
    const auto& summary = model_.lastSummary();
    summaryLabel_->setVisible(summary.has_value());
    summaryMark_->setVisible(summary.has_value());
    if (summary) {
        summaryLabel_->setText(qs(summary->text()));
        summaryLabel_->setStyleSheet(
            QStringLiteral("color:%1;").arg(rgba(Theme::of(!isLight()).named(NamedColor::green))));
    }
    const std::int64_t selected = model_.selectedBytes();
    const std::int64_t count = model_.selectedEntryCount();
    if (selected >= 1 && disk) {
        const std::int64_t left = std::min(disk->total, disk->available + selected);
        selectionLabel_->setText(qs(AppText::counted("已选 %n 项 · 清理后剩余 %1", count, {Formatting::bytes(left)})));
    } else {
        selectionLabel_->setText(qs(AppText::counted("已选 %n 项", count)));
    }
    const Theme& theme = Theme::of(!isLight());
    cleanButton_->setIcon(Symbols::icon("sparkles", selected >= 1 ? theme.onAccent : theme.secondary));
    const QString label =
        selected >= 1 ? qs(AppText::formatted("清理 %1", {Formatting::bytes(selected)})) : text("清理");
    // A blank keeps the label off the icon, which the style sets close.
    cleanButton_->setText(QStringLiteral(" ") + label);
    cleanButton_->setAccessibleName(label);
    cleanButton_->setEnabled(!model_.isBusy() && selected > 0);
    cleanButton_->setProperty("filled", selected >= 1);
    cleanButton_->style()->unpolish(cleanButton_);
    cleanButton_->style()->polish(cleanButton_);
}

void ContentView::apply(const TapDecision& decision) {
    switch (decision.action) {
    case TapDecision::Action::nothing: break;
    case TapDecision::Action::goBack:
    case TapDecision::Action::openCategory:
    case TapDecision::Action::openRule: model_.setRoute(decision.route); break;
    case TapDecision::Action::toggleEntry:
        if (const RuleScanResult* r = model_.result(decision.ruleID)) model_.toggleEntry(*r, decision.entryID);
        break;
    }
}

void ContentView::goBack() {
    if (back_) back_();
}

void ContentView::askToClean() {
    if (model_.isBusy() || model_.selectedBytes() <= 0 || cleanDialog_) return;
    auto* dialog = new QDialog(this);
    cleanDialog_ = dialog;
    dialog->setObjectName(QStringLiteral("cleanDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setPalette(window()->palette());
    dialog->setWindowModality(Qt::WindowModal);
    const QString title = qs(AppText::counted("清理选中的 %n 项,共 %1?", model_.selectedEntryCount(),
                                              {Formatting::bytes(model_.selectedBytes())}));
    dialog->setWindowTitle(title);
    auto* column = new QVBoxLayout(dialog);
    auto* head = new QLabel(title, dialog);
    QFont bold = head->font();
    bold.setBold(true);
    head->setFont(bold);
    head->setWordWrap(true);
    column->addWidget(head);
    auto* message = new QLabel(text("标记为「安全」的缓存删除后会由对应工具自动重建。"), dialog);
    message->setWordWrap(true);
    column->addWidget(message);

    auto* buttons = new QDialogButtonBox(dialog);
    auto* trash = buttons->addButton(text("移到废纸篓"), QDialogButtonBox::AcceptRole);
    trash->setObjectName(QStringLiteral("trash"));
    auto* remove = buttons->addButton(text("直接删除(立即释放空间)"), QDialogButtonBox::DestructiveRole);
    remove->setObjectName(QStringLiteral("delete"));
    auto* cancel = buttons->addButton(text("取消"), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cancel"));
    // A destructive choice is never the one Return picks.
    for (QPushButton* b : {trash, remove, cancel}) b->setAutoDefault(false);
    trash->setDefault(true);
    connect(trash, &QPushButton::clicked, dialog, [this, dialog] {
        dialog->accept();
        model_.clean(CleanMethod::trash);
    });
    connect(remove, &QPushButton::clicked, dialog, [this, dialog] {
        dialog->accept();
        model_.clean(CleanMethod::delete_);
    });
    connect(cancel, &QPushButton::clicked, dialog, &QDialog::reject);
    column->addWidget(buttons);
    dialog->open();
}

void ContentView::focusChart() { chart_->setFocus(); }

} // namespace lumabroom
