// The desktop application: one window over the model, one instance per user.

#include "LumabroomVersion.h"
#include "MainWindow.h"
#include "SingleInstance.h"
#include "model/AppModel.h"
#include "model/AppText.h"
#include "text/Localization.h"
#include "update/UpdateDialog.h"
#include "update/Updater.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDesktopServices>
#include <QMessageBox>
#include <QUrl>

#include <cstring>

namespace {

// Only --help, --help-all and --version: everything else is in the window.
void processOptions(const QCoreApplication& app) {
    QCoreApplication::setOrganizationName(QStringLiteral("Lumabroom"));
    QCoreApplication::setApplicationName(QStringLiteral("Lumabroom"));
    QCoreApplication::setApplicationVersion(QString::fromLatin1(lumabroom::kVersion));
    QCommandLineParser options;
    options.addHelpOption();
    options.addVersionOption();
    options.process(app);
}

// Whether the arguments only ask for a text, which needs no display.
bool asksForText(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        for (const char* option : {"-h", "--help", "-v", "--version"})
            if (std::strcmp(argv[i], option) == 0) return true;
    return false;
}

} // namespace

int main(int argc, char** argv) {
    using namespace lumabroom;
    if (asksForText(argc, argv)) {
        QCoreApplication app(argc, argv);
        processOptions(app);
    }
    QApplication app(argc, argv);
    processOptions(app);
    QApplication::setDesktopFileName(QStringLiteral("app.lumabroom.Lumabroom"));
    QApplication::setStyle(QStringLiteral("Fusion"));

    SingleInstance instance;
    if (instance.knockOnRunning()) return 0;

    // The language tables of core and application, before the first window.
    Localization::language();
    AppText::text("Lumabroom");

    AppModel model;
    Updater updater;
    MainWindow window(model, &updater);
    QObject::connect(&instance, &SingleInstance::activationRequested, &window, &MainWindow::bringToFront);

    // What the updater has to say arrives at the window.
    updater.setHandOver([](const QString& path) { QDesktopServices::openUrl(QUrl::fromLocalFile(path)); });
    QObject::connect(&updater, &Updater::updateAvailable, &window, [&](const AppcastItem& item) {
        auto* dialog = new UpdateDialog(updater, item, &window);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->open();
    });
    for (const auto signal : {&Updater::upToDate, &Updater::checkFailed})
        QObject::connect(&updater, signal, &window, [&window](const QString& sentence) {
            QMessageBox::information(&window, QStringLiteral("Lumabroom"), sentence);
        });

    window.show();
    updater.start();
    return QApplication::exec();
}
