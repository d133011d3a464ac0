#include "SingleInstance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>

#if defined(Q_OS_UNIX)
#include <unistd.h>
#endif

namespace lumabroom {
namespace {

constexpr int kAnswerMilliseconds = 1000;
const QByteArray kKnock = "activate\n";

} // namespace

QString SingleInstance::defaultName() {
#if defined(Q_OS_UNIX)
    const QString user = QString::number(::getuid());
#else
    const QString user = QDir::homePath();
#endif
    // Hashed, so a home path with any characters still makes a valid socket name.
    return QStringLiteral("lumabroom-")
           + QString::fromLatin1(QCryptographicHash::hash(user.toUtf8(), QCryptographicHash::Sha1).toHex().left(16));
}

SingleInstance::SingleInstance(QString name, QObject* parent) : QObject(parent), name_(std::move(name)) {}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::knockOnRunning() {
    QLocalSocket socket;
    socket.connectToServer(name_);
    if (socket.waitForConnected(kAnswerMilliseconds)) {
        socket.write(kKnock);
        socket.waitForBytesWritten(kAnswerMilliseconds);
        socket.disconnectFromServer();
        return true;
    }
    // Nobody answered: a socket left by a crashed instance is stale.
    QLocalServer::removeServer(name_);
    server_ = new QLocalServer(this);
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    server_->listen(name_);
    connect(server_, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* peer = server_->nextPendingConnection()) {
            connect(peer, &QLocalSocket::disconnected, peer, &QObject::deleteLater);
            Q_EMIT activationRequested();
        }
    });
    return false;
}

} // namespace lumabroom
