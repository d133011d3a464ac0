#pragma once

#include <QWidget>

class QHBoxLayout;
class QPushButton;
class QToolButton;

namespace lumabroom {

class AppModel;
class OptionsMenu;
class Updater;

// The bar across the top: the brand, the rescan button with its shortcut and the options.
class TopBar : public QWidget {
public:
    // `parent` must sit in the window already: the options menu takes the window's palette.
    TopBar(AppModel& model, Updater* updater, bool light, QWidget* parent);

    // Rescan only while no work runs.
    void refresh();

    QPushButton* rescanButton() const { return rescan_; }
    QToolButton* optionsButton() const { return options_; }
    OptionsMenu* optionsMenu() const { return menu_; }

private:
    void addTitles(QHBoxLayout& row);
    void addRescanButton(QHBoxLayout& row, bool light);
    void addOptionsButton(QHBoxLayout& row, Updater* updater, bool light);

    AppModel& model_;
    QPushButton* rescan_ = nullptr;
    QToolButton* options_ = nullptr;
    OptionsMenu* menu_ = nullptr;
};

} // namespace lumabroom
