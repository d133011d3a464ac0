#pragma once

#include "Appearance.h"
#include "chart/SunburstPalette.h"
#include "scan/Category.h"
#include "text/Localization.h"

#include <QWidget>

#include <functional>
#include <optional>
#include <string>
#include <vector>

class QDialog;
class QPushButton;
class QScrollArea;
class QStackedWidget;
class QVBoxLayout;

namespace lumabroom {

class AppModel;
class BottomBar;
class RuleDetailPanel;
class SunburstWidget;
class TopBar;
class Updater;
struct TapDecision;

// Everything inside the window, built in the current language: the bars, the chart and the
// right-hand panel, which shows the overview or a rule as the route says. It keeps no data of the
// model and no state worth keeping: a change of language throws it away and builds a new one.
class ContentView : public QWidget {
    Q_OBJECT

public:
    // `updater` may be null: the update item then stays disabled. `light` is the scheme in force.
    ContentView(AppModel& model, Updater* updater, bool light, QWidget* parent = nullptr);

    // The chart takes the first focus, so that the keys move around it at once.
    void focusChart();

    // The clean dialog while it is up.
    QDialog* cleanDialog() const;
    QPushButton* cleanButton() const;

protected:
    void resizeEvent(QResizeEvent* event) override;

Q_SIGNALS:
    void languageChosen(lumabroom::AppLanguage language);
    void appearanceChosen(lumabroom::AppearanceMode mode);
    void paletteChosen(lumabroom::ChartPalette palette);

private:
    // The room the floating bottom bar takes at the window's bottom, with its gaps.
    int bottomInset() const;
    // Scrolls the panel so that `control` ends above the bottom bar.
    void makeChart();
    void makeRightPanel();
    void makeBottomBar();
    void addShortcuts();
    void scheduleRefresh();
    void refresh();
    void refreshPanel();
    void showPage(QWidget* page);
    // Both return the first control of the panel, if any.
    QWidget* showOverview(std::optional<Category> filter);
    QWidget* orderTabs(const std::vector<QWidget*>& rows);
    bool showDetail(const std::string& ruleID);
    void apply(const TapDecision& decision);
    void goBack();

    AppModel& model_;
    bool light_ = false;
    TopBar* topBar_ = nullptr;
    SunburstWidget* chart_ = nullptr;
    QStackedWidget* rightPanel_ = nullptr;
    QScrollArea* panel_ = nullptr;      // the overview list and the plain panels
    RuleDetailPanel* detail_ = nullptr; // while a rule with a result is shown
    BottomBar* bottomBar_ = nullptr;
    // Where Escape goes from the route shown, if anywhere.
    std::function<void()> back_;
    bool refreshPending_ = false;
};

} // namespace lumabroom
