#include "ContentView.h"

#include "BottomBar.h"
#include "EmptyState.h"
#include "OptionsMenu.h"
#include "OverviewList.h"
#include "RuleDetailPanel.h"
#include "SunburstWidget.h"
#include "TopBar.h"
#include "ViewParts.h"
#include "model/AppModel.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace lumabroom {
namespace {
constexpr int sideMargin = 28;
constexpr int gapAboveBar = 12;
constexpr int gapBelowBar = 16;
} // namespace

ContentView::ContentView(AppModel& model, Updater* updater, bool light, QWidget* parent)
    : QWidget(parent),
      model_(model),
      light_(light) {
    setObjectName(QStringLiteral("content"));
    setMinimumSize(1080, 680);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    topBar_ = new TopBar(model_, updater, light_, this);
    column->addWidget(topBar_);
    const OptionsMenu* menu = topBar_->optionsMenu();
    connect(menu, &OptionsMenu::languageChosen, this, &ContentView::languageChosen);
    connect(menu, &OptionsMenu::appearanceChosen, this, &ContentView::appearanceChosen);
    connect(menu, &OptionsMenu::paletteChosen, this, &ContentView::paletteChosen);

    auto* row = new QHBoxLayout;
    row->setContentsMargins(sideMargin, 0, sideMargin, 0);
    row->setSpacing(28);
    auto* chartColumn = new QVBoxLayout;
    makeChart();
    chartColumn->addWidget(chart_, 1);
    row->addLayout(chartColumn, 1);
    makeRightPanel();
    row->addWidget(rightPanel_);
    column->addLayout(row, 1);

    makeBottomBar();
    // Chart and panel end above the floating bar, so no row is ever hidden or half shown beside it.
    row->setContentsMargins(sideMargin, 0, sideMargin, bottomInset());
    addShortcuts();

    for (const auto signal :
         {&AppModel::resultsChanged, &AppModel::selectedEntryIDsChanged, &AppModel::isBusyChanged,
          &AppModel::routeChanged, &AppModel::showEmptyRulesChanged, &AppModel::scannedRuleCountChanged,
          &AppModel::diskSpaceChanged, &AppModel::collapsedCategoriesChanged, &AppModel::lastSummaryChanged,
          &AppModel::canUndoChanged, &AppModel::isUndoingChanged})
        connect(&model_, signal, this, &ContentView::scheduleRefresh);
    refresh();

    setTabOrder(topBar_->rescanButton(), topBar_->optionsButton());
    setTabOrder(topBar_->optionsButton(), chart_);
}

void ContentView::makeBottomBar() {
    // The bar floats over the bottom edge, outside the layout.
    bottomBar_ = new BottomBar(model_, light_, this);
    // The scroll area shows a control that takes the focus by Tab, not one focused otherwise (a
    // keyboard shortcut, a panel rebuilt). A press leaves the list where it is, or the release would
    // miss the row it pressed.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now && panel_->widget() && panel_->widget()->isAncestorOf(now)
            && QGuiApplication::mouseButtons() == Qt::NoButton)
            panel_->ensureWidgetVisible(now, 0, 0);
    });
}

int ContentView::bottomInset() const { return gapAboveBar + bottomBar_->sizeHint().height() + gapBelowBar; }

void ContentView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const int barWidth = std::min(bottomBar_->maximumWidth(), width() - 2 * sideMargin);
    const int barHeight = bottomBar_->sizeHint().height();
    bottomBar_->setGeometry((width() - barWidth) / 2, height() - gapBelowBar - barHeight, barWidth, barHeight);
}

QDialog* ContentView::cleanDialog() const { return bottomBar_->cleanDialog(); }
QPushButton* ContentView::cleanButton() const { return bottomBar_->cleanButton(); }

void ContentView::makeChart() {
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
    chart_->setLight(light_);
    connect(chart_, &SunburstWidget::tapped, this, &ContentView::apply);
}

void ContentView::makeRightPanel() {
    rightPanel_ = new QStackedWidget(this);
    rightPanel_->setObjectName(QStringLiteral("rightPanel"));
    rightPanel_->setFixedWidth(540);
    panel_ = new QScrollArea(rightPanel_);
    panel_->setObjectName(QStringLiteral("panel"));
    rightPanel_->addWidget(panel_);
    panel_->setWidgetResizable(true);
    panel_->setFrameShape(QFrame::NoFrame);
    panel_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    panel_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    panel_->setFocusPolicy(Qt::NoFocus);
    // The window's gradient shows through the list rather than a plain fill.
    panel_->viewport()->setAutoFillBackground(false);
}

void ContentView::addShortcuts() {
    // The only shortcuts besides the rescan's: they stand for the buttons they press.
    auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(escape, &QShortcut::activated, this, &ContentView::goBack);
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* ret = new QShortcut(QKeySequence(key), this);
        connect(ret, &QShortcut::activated, this, [this] {
            if (cleanButton()->isEnabled()) cleanButton()->click();
        });
    }
}

void ContentView::scheduleRefresh() {
    // A scan changes the model once per rule: one rebuild per turn of the event loop is enough.
    if (refreshPending_) return;
    refreshPending_ = true;
    QMetaObject::invokeMethod(this, &ContentView::refresh, Qt::QueuedConnection);
}

void ContentView::refresh() {
    refreshPending_ = false;
    topBar_->refresh();
    refreshPanel();
    bottomBar_->refresh();
    chart_->refresh();
}

void ContentView::refreshPanel() {
    const Route& route = model_.route();
    if (route.ruleID() && showDetail(*route.ruleID())) return;
    if (detail_) {
        rightPanel_->setCurrentWidget(panel_);
        detail_->deleteLater(); // its state starts over at the next rule
        detail_ = nullptr;
    }
    // The focus stays on its control, or on one of the same name when that one was replaced.
    QPointer<QWidget> focused = window()->focusWidget(); // the window's own, whether or not it is active
    const QString focusName = focused && panel_->isAncestorOf(focused) ? focused->objectName() : QString();

    back_ = nullptr;
    QWidget* first = nullptr;
    if (route.ruleID()) {
        auto* page = new QWidget;
        page->setObjectName(QStringLiteral("panelPage"));
        auto* list = new QVBoxLayout(page);
        list->setContentsMargins(0, 0, 0, 0);
        list->addWidget(new EmptyState("questionmark.folder", ViewParts::text("该项已不存在"), {}, light_, page));
        list->addStretch(1);
        showPage(page);
        orderTabs({});
    } else {
        const Category* filter = route.categoryValue();
        if (filter) back_ = [this] { model_.setRoute(Route::overview()); };
        first = showOverview(filter ? std::optional(*filter) : std::nullopt);
    }
    if (focusName.isEmpty() || (focused && panel_->isAncestorOf(focused))) return;
    // When a press changed the route, the first control of the new panel.
    QWidget* again = panel_->widget()->findChild<QWidget*>(focusName);
    if (!again) again = first;
    if (again) again->setFocus();
}

QWidget* ContentView::showOverview(std::optional<Category> filter) {
    auto* list = dynamic_cast<OverviewList*>(panel_->widget());
    if (!list) {
        list = new OverviewList(model_, light_);
        showPage(list);
    }
    list->showGroups(filter);
    return orderTabs(list->rows());
}

void ContentView::showPage(QWidget* page) {
    const int scroll = panel_->verticalScrollBar()->value();
    panel_->setWidget(page);
    page->setAutoFillBackground(false);
    page->setPalette(window()->palette());
    panel_->verticalScrollBar()->setValue(scroll);
}

QWidget* ContentView::orderTabs(const std::vector<QWidget*>& rows) {
    // Tab goes from the chart down the panel's rows to the bottom bar, as they stand on screen.
    QWidget* previous = chart_;
    QWidget* first = nullptr;
    const auto next = [&](QWidget* w) {
        if (!(w->focusPolicy() & Qt::TabFocus)) return;
        if (!first) first = w;
        setTabOrder(previous, w);
        previous = w;
    };
    for (QWidget* row : rows) {
        next(row);
        for (QWidget* w : row->findChildren<QWidget*>()) next(w);
    }
    bottomBar_->followInTabs(previous);
    return first;
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
        bottomBar_->followInTabs(detail_);
    } else if (detail_->ruleID() != ruleID) {
        detail_->showRule(ruleID);
    }
    rightPanel_->setCurrentWidget(detail_);
    const Category category = result->rule.category;
    back_ = [this, category] { model_.setRoute(Route::category(category)); };
    if (focusInPanel) detail_->setFocus();
    return true;
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

void ContentView::focusChart() { chart_->setFocus(); }

} // namespace lumabroom
