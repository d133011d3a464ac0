#pragma once

#include "Appearance.h"
#include "chart/SunburstPalette.h"
#include "text/Localization.h"

#include <QDialog>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <string>

class QAction;
class QBoxLayout;
class QLabel;
class QPushButton;
class QScrollArea;
class QStackedWidget;
class QToolButton;
class QVBoxLayout;

namespace lumabroom {

class AppModel;
class DiskStatusSegment;
class RuleDetailPanel;
class SunburstWidget;
class Updater;
struct TapDecision;

// Everything inside the window, built in the current language. It keeps no data of the model and
// no state worth keeping: a change of language throws it away and builds a new one.
class ContentView : public QWidget {
    Q_OBJECT

public:
    // `updater` may be null: the update item then stays disabled. `light` is the scheme in force.
    ContentView(AppModel& model, Updater* updater, bool light, QWidget* parent = nullptr);

    // The chart takes the first focus, so that the keys move around it at once.
    void focusChart();

    // The clean dialog while it is up.
    QDialog* cleanDialog() const { return cleanDialog_; }
    QPushButton* cleanButton() const { return cleanButton_; }

Q_SIGNALS:
    void languageChosen(lumabroom::AppLanguage language);
    void appearanceChosen(lumabroom::AppearanceMode mode);
    void paletteChosen(lumabroom::ChartPalette palette);

private:
    QWidget* makeTopBar();
    QToolButton* makeOptionsButton();
    QWidget* makeBottomBar();
    void scheduleRefresh();
    void refresh();
    void refreshPanel();
    void refreshBottomBar();
    void fillOverview(QVBoxLayout& list, const Category* filter);
    bool showDetail(const std::string& ruleID);
    void addBackButton(QVBoxLayout& list, const QString& label, Category target);
    void addEmptyState(QVBoxLayout& list, const std::string& symbol, const QString& title, const QString& description);
    void apply(const TapDecision& decision);
    void goBack();
    void askToClean();
    bool isLight() const { return light_; }

    AppModel& model_;
    QPointer<Updater> updater_;
    bool light_ = false;
    SunburstWidget* chart_ = nullptr;
    QStackedWidget* rightPanel_ = nullptr;
    QScrollArea* panel_ = nullptr;      // the overview list and the plain panels
    RuleDetailPanel* detail_ = nullptr; // while a rule with a result is shown
    QPushButton* rescanButton_ = nullptr;
    QAction* emptyRulesAction_ = nullptr;
    DiskStatusSegment* diskSegment_ = nullptr;
    QLabel* summaryMark_ = nullptr;
    QLabel* summaryLabel_ = nullptr;
    QLabel* selectionLabel_ = nullptr;
    QPushButton* cleanButton_ = nullptr;
    QPointer<QDialog> cleanDialog_;
    // Where Escape goes from the route shown, if anywhere.
    std::function<void()> back_;
    bool refreshPending_ = false;
};

} // namespace lumabroom
