#include "DesktopServices.h"
#include "FileManager.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QGuiApplication>

namespace lumabroom {

QDBusMessage FileManager::showItems(const std::filesystem::path& item) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{QUrl::fromLocalFile(QString::fromStdString(item.string())).toString(QUrl::FullyEncoded)}
         << QString();
    return call;
}

namespace DesktopServices {

void reveal(const std::filesystem::path& item) {
    const QUrl fallback = parentFolder(item);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        QDesktopServices::openUrl(fallback);
        return;
    }
    // A file manager that is not running starts on the call; give it a few seconds to answer.
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(FileManager::showItems(item), 5000), qApp);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, qApp, [fallback](QDBusPendingCallWatcher* done) {
        done->deleteLater();
        if (done->isError()) {
            QDesktopServices::openUrl(fallback);
        }
    });
}

} // namespace DesktopServices

} // namespace lumabroom
