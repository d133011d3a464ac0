#include "OptionsMenu.h"

#include "ViewParts.h"
#include "model/AppModel.h"
#include "model/AppText.h"
#include "model/DisplayName.h"
#include "update/Updater.h"

#include <QActionGroup>

namespace lumabroom {

using ViewParts::text;

OptionsMenu::OptionsMenu(AppModel& model, Updater* updater, QWidget* parent)
    : QMenu(parent),
      model_(model),
      updater_(updater) {
    setObjectName(QStringLiteral("optionsMenu"));
    // A popup is a window of its own and would take the application's palette.
    setPalette(parent->window()->palette());

    emptyRulesAction_ = addAction(text("显示空项"));
    emptyRulesAction_->setCheckable(true);
    emptyRulesAction_->setChecked(model_.showEmptyRules());
    connect(emptyRulesAction_, &QAction::toggled, &model_, [this](bool on) { model_.setShowEmptyRules(on); });
    addSeparator();
    addAppearances();
    addPalettes();
    addLanguages();
    addSeparator();
    addUpdateCheck();
}

void OptionsMenu::refresh() { emptyRulesAction_->setChecked(model_.showEmptyRules()); }

std::pair<QMenu*, QActionGroup*> OptionsMenu::addPicker(const QString& title) {
    auto* sub = addMenu(title);
    sub->setPalette(palette());
    auto* group = new QActionGroup(sub);
    group->setExclusive(true);
    return {sub, group};
}

QAction* OptionsMenu::addChoice(QMenu* sub, QActionGroup* group, const std::string& name, bool checked) {
    auto* action = sub->addAction(ViewParts::qs(name));
    action->setCheckable(true);
    action->setChecked(checked);
    group->addAction(action);
    return action;
}

// The choices below are queued: each rebuilds the window's content, this menu included.

void OptionsMenu::addAppearances() {
    auto [sub, group] = addPicker(text("外观"));
    const auto current = Appearance::stored();
    for (const AppearanceMode mode : allAppearanceModes) {
        auto* action = addChoice(sub, group, Appearance::displayName(mode), mode == current);
        connect(
            action, &QAction::triggered, this, [this, mode] { Q_EMIT appearanceChosen(mode); }, Qt::QueuedConnection);
    }
}

void OptionsMenu::addPalettes() {
    auto [sub, group] = addPicker(text("图表配色"));
    const auto current = SunburstPalette::stored();
    for (const auto& [value, key] :
         {std::pair{ChartPalette::hues, "彩色"}, std::pair{ChartPalette::colorBlindSafe, "色盲友好"}}) {
        auto* action = addChoice(sub, group, AppText::text(key), value == current);
        connect(
            action, &QAction::triggered, this, [this, palette = value] { Q_EMIT paletteChosen(palette); },
            Qt::QueuedConnection);
    }
}

void OptionsMenu::addLanguages() {
    auto [sub, group] = addPicker(text("语言"));
    const auto current = Localization::language();
    for (const AppLanguage value : allAppLanguages) {
        auto* action = addChoice(sub, group, displayName(value), value == current);
        connect(
            action, &QAction::triggered, this, [this, value] { Q_EMIT languageChosen(value); }, Qt::QueuedConnection);
    }
}

void OptionsMenu::addUpdateCheck() {
    auto* check = addAction(text("检查更新…"));
    check->setObjectName(QStringLiteral("checkForUpdates"));
    check->setEnabled(updater_ && updater_->canCheckForUpdates());
    if (!updater_) return;
    connect(updater_, &Updater::canCheckForUpdatesChanged, check, &QAction::setEnabled);
    connect(check, &QAction::triggered, updater_, [this] { updater_->checkForUpdates(); });
}

} // namespace lumabroom
