#include "MainWindow.h"

#include "ContentView.h"
#include "WindowLook.h"
#include "host/Platform.h"
#include "model/AppModel.h"
#include "model/AppText.h"
#include "update/Updater.h"

#include <QApplication>
#include <QCloseEvent>
#include <QStyle>
#include <QVBoxLayout>

namespace lumabroom {

MainWindow::MainWindow(AppModel& model, Updater* updater, QWidget* parent)
    : QWidget(parent), model_(model), updater_(updater) {
    setObjectName(QStringLiteral("mainWindow"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    resize(1200, 760);
    applyLook();
    rebuild();
    // "Follow the system" follows it while the window is open.
    connect(&appearance_, &AppearanceController::darkChanged, this, [this] {
        applyLook();
        rebuild();
    });
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
    const QPalette palette = WindowLook::palette(light);
    QApplication::setPalette(palette);
    const QColor text = palette.color(QPalette::WindowText);
    const QColor card = WindowLook::cardBackground(light);
    const QColor accent = WindowLook::accent(light);
    const auto rgba = [](QColor c) {
        return QStringLiteral("rgba(%1,%2,%3,%4)").arg(c.red()).arg(c.green()).arg(c.blue()).arg(c.alphaF(), 0, 'f', 3);
    };
    QColor secondary = text;
    secondary.setAlphaF(0.65f);
    QColor outline = text;
    outline.setAlphaF(0.12f);
    QColor selectedOutline = accent;
    selectedOutline.setAlphaF(0.45f);
    QColor bar = palette.color(QPalette::Base);
    bar.setAlphaF(0.92f);
    qApp->setStyleSheet(QStringLiteral(
        "QWidget#mainWindow { background: %1; }"
        "QLabel#secondary { color: %2; }"
        "QLabel#brand { color: %5; font-size: 26px; }"
        "QPushButton[kind=\"row\"] { text-align: left; background: transparent; border: 1px solid transparent; border-radius: 12px; }"
        "QPushButton[kind=\"row\"]:hover, QPushButton[kind=\"row\"]:focus { background: %3; }"
        "QPushButton[kind=\"row\"][selected=\"true\"] { border: 1px solid %7; }"
        "QPushButton[kind=\"round\"], QToolButton#options { border-radius: 17px; background: %3; border: 1px solid %4; font-size: 16px; }"
        "QPushButton[kind=\"round\"]:disabled { color: %2; }"
        "QPushButton#back { border: none; color: %5; padding: 4px 0; text-align: left; }"
        "QFrame#bottomBar { background: %6; border: 1px solid %4; border-radius: 28px; }"
        "QLabel#selectionStatus { color: %2; }"
        "QPushButton#clean { border-radius: 19px; padding: 0 18px; border: none; background: %3; color: %2; }"
        "QPushButton#clean[filled=\"true\"] { background: %5; color: #06201d; font-weight: bold; }"
        "QPushButton#clean:focus { border: 2px solid %4; }"
        "QCheckBox::indicator { width: 14px; height: 14px; border: 1px solid %2; border-radius: 4px; }"
        "QCheckBox::indicator:checked { background: %5; border-color: %5; }"
        "QCheckBox::indicator:disabled { border-style: dashed; }")
                          .arg(palette.color(QPalette::Window).name(), rgba(secondary), rgba(card), rgba(outline),
                               accent.name(), rgba(bar), rgba(selectedOutline)));
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
