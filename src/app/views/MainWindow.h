#pragma once

#include "Appearance.h"
#include "text/Localization.h"

#include <QPointer>
#include <QWidget>

namespace lumabroom {

class AppModel;
class ContentView;
class Updater;

// The one window. It outlives its content: a change of language builds the content anew while the
// model, with its route and selection, stays.
class MainWindow : public QWidget {
    Q_OBJECT

public:
    MainWindow(AppModel& model, Updater* updater, QWidget* parent = nullptr);

    ContentView* content() const { return content_; }
    void setLanguage(AppLanguage language);
    void setAppearance(AppearanceMode mode);
    // Raises the window above the others, as a second launch asks.
    void bringToFront();

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void rebuild();
    void applyLook();

    AppModel& model_;
    QPointer<Updater> updater_;
    AppearanceController appearance_;
    ContentView* content_ = nullptr;
    bool shown_ = false;
    bool light_ = false;
};

} // namespace lumabroom
