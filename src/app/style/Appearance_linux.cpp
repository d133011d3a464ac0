#include "Portal.h"
#include "SystemSchemeBackend.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace lumabroom {

namespace {

// Asks the desktop portal once and follows its change signal. Without a session bus or a portal
// nothing is reported, and the palette decides.
class PortalWatch : public QObject {
    Q_OBJECT
public:
    explicit PortalWatch(SystemScheme& scheme) : scheme_(scheme) {
        QDBusConnection bus = QDBusConnection::sessionBus();
        if (!bus.isConnected()) {
            return;
        }
        // D-Bus signals connect only by slot name.
        bus.connect(QLatin1String(Portal::kService), QLatin1String(Portal::kPath), QLatin1String(Portal::kInterface),
                    QStringLiteral("SettingChanged"), this, SLOT(onSettingChanged(QString, QString, QDBusVariant)));
        read(QStringLiteral("ReadOne"));
    }

private Q_SLOTS:
    void onSettingChanged(const QString& settingNamespace, const QString& key, const QDBusVariant& value) {
        if (Portal::isColorScheme(settingNamespace, key)) {
            SystemSchemeBackend::report(scheme_, Portal::prefersDark(value.variant()));
        }
    }

private:
    // Portals before version 2 have only the deprecated `Read`.
    void read(const QString& method) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            QLatin1String(Portal::kService), QLatin1String(Portal::kPath), QLatin1String(Portal::kInterface), method);
        call << QLatin1String(Portal::kNamespace) << QLatin1String(Portal::kKey);
        auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call, 2000), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, method](QDBusPendingCallWatcher* done) {
            done->deleteLater();
            const QDBusPendingReply<QDBusVariant> reply = *done;
            if (!reply.isError()) {
                SystemSchemeBackend::report(scheme_, Portal::prefersDark(reply.argumentAt(0)));
            } else if (method == QLatin1String("ReadOne")) {
                read(QStringLiteral("Read"));
            }
        });
    }

    SystemScheme& scheme_;
};

} // namespace

std::unique_ptr<QObject> SystemSchemeBackend::create(SystemScheme& scheme) {
    return std::make_unique<PortalWatch>(scheme);
}

} // namespace lumabroom

#include "Appearance_linux.moc"
