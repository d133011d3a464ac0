// Takes pictures of the window with a rule's detail panel open, for the screenshot script: the
// window is the application's own over the real model, in the language and scheme of the settings;
// it scans HOME once, then opens each rule in turn and saves the window once everything the panel
// loads has arrived and the figures have stopped rolling.
//
//   detail_shots OUT_PREFIX WIDTHxHEIGHT NAME=RULE_ID[+tick]...
//
// "+tick" ticks the first two rows of the panel, entries or sessions, by clicking them.

#include "MainWindow.h"
#include "model/AppModel.h"
#include "model/AppText.h"
#include "text/Localization.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QScreen>
#include <QTest>

#include <cstdio>
#include <string>

namespace {

using namespace lumabroom;

// Processes events until `done` holds or `limitMs` has passed; false on the limit.
template <class Condition>
bool waitFor(Condition done, int limitMs) {
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > limitMs) return false;
        QTest::qWait(20);
    }
    return true;
}

bool loading(const AppModel& model) {
    return model.isBusy() || model.isLoadingWorktrees() || model.isLoadingInventory() || model.isLoadingTopSessions()
           || model.isRefiningOrbStack();
}

// Clicks the boxes of the first two visible rows of that name.
void tickTwo(QWidget& window, const QString& rowName) {
    int ticked = 0;
    for (QWidget* row : window.findChildren<QWidget*>(rowName)) {
        if (!row->isVisible() || ticked == 2) continue;
        if (auto* box = row->findChild<QCheckBox*>()) {
            QTest::mouseClick(box, Qt::LeftButton);
            ++ticked;
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::fprintf(stderr, "usage: detail_shots OUT_PREFIX WIDTHxHEIGHT NAME=RULE_ID[+tick]...\n");
        return 2;
    }
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Lumabroom"));
    QCoreApplication::setApplicationName(QStringLiteral("Lumabroom"));
    QApplication::setStyle(QStringLiteral("Fusion"));
    Localization::language();
    AppText::text("Lumabroom");

    const QString prefix = QString::fromLocal8Bit(argv[1]);
    const QStringList size = QString::fromLatin1(argv[2]).split(QLatin1Char('x'));
    AppModel model;
    MainWindow window(model, nullptr);
    window.resize(size.value(0).toInt(), size.value(1).toInt());
    window.show();
    if (!waitFor([&] { return !model.results().empty() && !loading(model); }, 120'000)) {
        std::fprintf(stderr, "detail_shots: the first scan did not end\n");
        return 1;
    }
    for (int i = 3; i < argc; ++i) {
        const QString shot = QString::fromLocal8Bit(argv[i]);
        const QString name = shot.section(QLatin1Char('='), 0, 0);
        QString rule = shot.section(QLatin1Char('='), 1);
        const bool tick = rule.endsWith(QStringLiteral("+tick"));
        if (tick) rule.chop(5);
        model.setSelectedEntryIDs({});
        model.setRoute(Route::rule(rule.toStdString()));
        // The panel starts its loads on the next turn of the loop.
        QTest::qWait(200);
        if (!waitFor([&] { return !loading(model); }, 60'000))
            std::fprintf(stderr, "detail_shots: %s still loads\n", argv[i]);
        if (tick) {
            tickTwo(window, QStringLiteral("entry-row"));
            tickTwo(window, QStringLiteral("session-row"));
        }
        QTest::qWait(1500);
        const QString file = prefix + name + QStringLiteral(".png");
        // What the screen shows, not a fresh rendering of the widgets.
        if (!window.screen()->grabWindow(window.winId()).save(file)) {
            std::fprintf(stderr, "detail_shots: cannot write %s\n", qPrintable(file));
            return 1;
        }
        std::printf("%s\n", qPrintable(file));
    }
    return 0;
}
