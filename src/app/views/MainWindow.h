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
    void paintEvent(QPaintEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void rebuild();
    void applyLook();
    void traceStartup();

    AppModel& model_;
    QPointer<Updater> updater_;
    AppearanceController appearance_;
    ContentView* content_ = nullptr;
    bool shown_ = false;
    bool light_ = false;
    QString lookSheet_;
    // With LUMABROOM_STARTUP_TRACE set: 1 until the first paint, 2 until the first result is painted.
    int traceStage_ = 0;
    bool traceResult_ = false;
};

} // namespace lumabroom
