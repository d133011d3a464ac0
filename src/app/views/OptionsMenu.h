#pragma once

#include "Appearance.h"
#include "chart/SunburstPalette.h"
#include "text/Localization.h"

#include <QMenu>
#include <QPointer>

#include <string>

class QActionGroup;

namespace lumabroom {

class AppModel;
class Updater;

// The options: empty rules, appearance, chart colours, language and the update check. The choices
// that rebuild the window are handed to the owner as signals.
class OptionsMenu : public QMenu {
    Q_OBJECT

public:
    // `updater` may be null: the update item then stays disabled. `parent` must sit in the window
    // already, whose palette the menu takes.
    OptionsMenu(AppModel& model, Updater* updater, QWidget* parent);

    // Shows the model's choice of empty rules.
    void refresh();

Q_SIGNALS:
    void languageChosen(lumabroom::AppLanguage language);
    void appearanceChosen(lumabroom::AppearanceMode mode);
    void paletteChosen(lumabroom::ChartPalette palette);

private:
    // A submenu of exclusive choices.
    std::pair<QMenu*, QActionGroup*> addPicker(const QString& title);
    static QAction* addChoice(QMenu* sub, QActionGroup* group, const std::string& name, bool checked);
    void addAppearances();
    void addPalettes();
    void addLanguages();
    void addUpdateCheck();

    AppModel& model_;
    QPointer<Updater> updater_;
    QAction* emptyRulesAction_ = nullptr;
};

} // namespace lumabroom
