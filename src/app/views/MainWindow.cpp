#include "MainWindow.h"

#include "ContentView.h"
#include "NebulaBackground.h"
#include "Theme.h"
#include "ViewParts.h"
#include "host/Platform.h"
#include "model/AppModel.h"
#include "model/AppText.h"
#include "update/Updater.h"

#include <QApplication>
#include <QCloseEvent>
#include <QPainter>
#include <QStyle>
#include <QVBoxLayout>

#include <chrono>
#include <cstdio>

namespace lumabroom {

MainWindow::MainWindow(AppModel& model, Updater* updater, QWidget* parent)
    : QWidget(parent),
      model_(model),
      updater_(updater) {
    setObjectName(QStringLiteral("mainWindow"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    resize(1200, 760);
    // Without it a style sheet hands every widget it touches the application's palette, and the
    // scheme set on this window stops at the first of them.
    QCoreApplication::setAttribute(Qt::AA_UseStyleSheetPropagationInWidgetStyles);
    applyLook();
    rebuild();
    // "Follow the system" follows it while the window is open.
    connect(&appearance_, &AppearanceController::darkChanged, this, [this] {
        applyLook();
        rebuild();
    });
    if (qEnvironmentVariableIsSet("LUMABROOM_STARTUP_TRACE")) traceStartup();
}

namespace {
void printStamp(const char* what) {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    std::fprintf(stderr, "startup %s %lld\n", what,
                 static_cast<long long>(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count()));
}
} // namespace

void MainWindow::traceStartup() {
    // For the start-up benchmark: monotonic stamps of the first paint and of the first painted result.
    traceStage_ = 1;
    printStamp("constructed");
    qApp->installEventFilter(this);
    // Queued behind the content's own refresh, so the paint that follows shows the result.
    connect(&model_, &AppModel::resultsChanged, this, [this] {
        QMetaObject::invokeMethod(
            this, [this] { traceResult_ = true; }, Qt::QueuedConnection);
    });
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Paint || !watched->isWidgetType()
        || window() != static_cast<QWidget*>(watched)->window())
        return false;
    if (traceStage_ == 1) {
        printStamp("first-paint");
        traceStage_ = 2;
    } else if (traceStage_ == 2 && traceResult_) {
        printStamp("first-result");
        traceStage_ = 0;
        qApp->removeEventFilter(this);
    }
    return false;
}

void MainWindow::setLanguage(AppLanguage language) {
    Localization::setLanguage(language);
    rebuild();
}

void MainWindow::setAppearance(AppearanceMode mode) { appearance_.setMode(mode); }

void MainWindow::rebuild() {
    setWindowTitle(QString::fromStdString(AppText::text("Lumabroom")));
    // Deleting the old content closes its clean dialog with it.
    delete content_;
    content_ = new ContentView(model_, updater_, light_, this);
    content_->setStyleSheet(lookSheet_);
    // A child made after the window took its palette may start from the application's; setting
    // it again hands it to every widget below.
    const QPalette look = palette();
    setPalette(QPalette());
    setPalette(look);
    layout()->addWidget(content_);
    connect(content_, &ContentView::languageChosen, this, &MainWindow::setLanguage);
    connect(content_, &ContentView::appearanceChosen, this, &MainWindow::setAppearance);
    connect(content_, &ContentView::paletteChosen, this, [this](ChartPalette palette) {
        SunburstPalette::store(palette);
        rebuild();
    });
    setMinimumSize(content_->minimumSize());
    if (isVisible()) content_->focusChart();
}

void MainWindow::applyLook() {
    light_ = !appearance_.isDark();
    const bool light = light_;
    const Theme& theme = Theme::of(!light);
    // On this window only: the application keeps the system's palette for "follow the system" to read.
    const QPalette palette = theme.palette();
    setPalette(palette);
    const QColor text = theme.primary;
    const QColor card = theme.card;
    const QColor accent = theme.accentA;
    QColor secondary = text;
    secondary.setAlphaF(0.65f);
    QColor outline = text;
    outline.setAlphaF(0.12f);
    QColor selectedOutline = accent;
    selectedOutline.setAlphaF(0.45f);
    QColor bar = palette.color(QPalette::Base);
    bar.setAlphaF(0.92f);
    // On the content, which every change of scheme builds anew: a style sheet on this window would
    // keep the palette it first saw and hand the application's to the widgets below.
    lookSheet_ =
        QStringLiteral(
            "QLabel#secondary { color: %2; }"
            "QPushButton[kind=\"plain\"]:!flat { border-radius: 8px; padding: 3px 12px; background: %3; "
            "border: 1px solid %4; }"
            "QPushButton[kind=\"plain\"]:!flat:hover { border-color: %2; }"
            "QPushButton[kind=\"plain\"]:!flat:focus { border: 2px solid %5; }"
            "QPushButton[kind=\"plain\"]:!flat:disabled { color: %2; }"
            "QPushButton[kind=\"row\"] { text-align: left; background: transparent; border: 1px solid transparent; "
            "border-radius: 12px; }"
            "QPushButton[kind=\"row\"]:hover, QPushButton[kind=\"row\"]:focus { background: %3; }"
            "QPushButton[kind=\"row\"][selected=\"true\"] { border: 1px solid %7; }"
            "QPushButton[kind=\"round\"], QToolButton#options { border-radius: 17px; background: %3; border: 1px solid "
            "%4; font-size: 16px; }"
            "QPushButton[kind=\"round\"]:disabled { color: %2; }"
            "QPushButton#back { border: none; color: %5; padding: 4px 0; text-align: left; }"
            "QFrame#bottomBar { background: %6; border: 1px solid %4; border-radius: 28px; }"
            "QLabel#selectionStatus { color: %2; }"
            "QPushButton#clean { border-radius: 19px; padding: 0 18px; border: none; background: %3; color: %2; }"
            "QPushButton#clean[filled=\"true\"] { background: %1; color: %8; font-weight: bold; }"
            "QPushButton#clean:focus { border: 2px solid %4; }"
            "QPushButton#undo { border-radius: 14px; padding: 0 14px; background: %3; border: 1px solid %4; }"
            "QPushButton#undo:focus { border: 2px solid %5; }"
            "QCheckBox::indicator { width: 14px; height: 14px; border: 1px solid %2; border-radius: 4px; }"
            "QCheckBox::indicator:checked { background: %5; border-color: %5; }"
            "QCheckBox::indicator:disabled { border-style: dashed; }"
            // Thin and without arrows, as wide as the gap it stands in.
            "QScrollBar:vertical { width: 8px; background: transparent; margin: 0; }"
            "QScrollBar::handle:vertical { background: %4; border-radius: 4px; min-height: 32px; }"
            "QScrollBar::handle:vertical:hover { background: %2; }"
            "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }"
            "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: transparent; }")
            .arg(QStringLiteral("qlineargradient(x1:0, y1:0, x2:1, y2:0, stop:0 %1, stop:1 %2)")
                     .arg(theme.accentA.name(), theme.accentB.name()),
                 ViewParts::rgba(secondary), ViewParts::rgba(card), ViewParts::rgba(outline), accent.name(),
                 ViewParts::rgba(bar), ViewParts::rgba(selectedOutline), theme.onAccent.name());
}

void MainWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    NebulaBackground::paint(painter, QRectF(rect()), Theme::of(!light_));
}

void MainWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (shown_) return;
    shown_ = true;
    content_->focusChart();
    // The one scan that starts by itself; a model that already has results is left as it is.
    if (model_.results().empty()) model_.scan();
}

void MainWindow::bringToFront() {
    if (isMinimized()) showNormal();
    show();
    raise();
    activateWindow();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->accept();
    // Nothing is saved at the end, and running work is not waited for.
    Platform::quitNow(0);
}

} // namespace lumabroom
