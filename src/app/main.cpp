// The desktop application: one window over the model, one instance per user.

#include "MainWindow.h"
#include "SingleInstance.h"
#include "model/AppModel.h"
#include "model/AppText.h"
#include "text/Localization.h"
#include "update/UpdateDialog.h"
#include "update/Updater.h"

#include <QApplication>
#include <QDesktopServices>
#include <QMessageBox>
#include <QUrl>

int main(int argc, char** argv) {
    using namespace lumabroom;
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Lumabroom"));
    QApplication::setApplicationName(QStringLiteral("Lumabroom"));
    QApplication::setApplicationVersion(QStringLiteral(LUMABROOM_VERSION));
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
