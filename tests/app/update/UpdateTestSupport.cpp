#include "UpdateTestSupport.h"

#include <QCoreApplication>
#include <QTcpSocket>

#include <sodium.h>

#include <memory>

namespace lumabroom::test {

void ensureApplication() {
    if (QCoreApplication::instance()) return;
    static int argc = 1;
    static char name[] = "update_tests";
    static char* argv[] = {name, nullptr};
    static const auto application = std::make_unique<QCoreApplication>(argc, argv);
}

KeyPair makeKeys() {
    if (sodium_init() < 0) return {};
    unsigned char publicKey[crypto_sign_PUBLICKEYBYTES];
    unsigned char secretKey[crypto_sign_SECRETKEYBYTES];
    crypto_sign_keypair(publicKey, secretKey);
    return {QByteArray(reinterpret_cast<const char*>(publicKey), sizeof publicKey).toBase64(),
            QByteArray(reinterpret_cast<const char*>(secretKey), sizeof secretKey)};
}

QByteArray signature(const QByteArray& content, const QByteArray& secretKey) {
    unsigned char signed_[crypto_sign_BYTES];
    crypto_sign_detached(signed_, nullptr, reinterpret_cast<const unsigned char*>(content.constData()),
                         static_cast<unsigned long long>(content.size()),
                         reinterpret_cast<const unsigned char*>(secretKey.constData()));
    return QByteArray(reinterpret_cast<const char*>(signed_), sizeof signed_).toBase64();
}

TestServer::TestServer() {
    server_.listen(QHostAddress::LocalHost, 0);
    QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this] {
        while (QTcpSocket* socket = server_.nextPendingConnection()) {
            auto head = std::make_shared<QByteArray>();
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, head] {
                if (head->contains("\r\n\r\n")) return;
                *head += socket->readAll();
                if (head->contains("\r\n\r\n")) answer(socket, *head);
            });
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
}

QUrl TestServer::url(const QString& path) const {
    return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(server_.serverPort()).arg(path));
}

void TestServer::serve(const QString& path, Response response) { responses_.insert(path, std::move(response)); }

void TestServer::answer(QTcpSocket* socket, const QByteArray& head) {
    const QList<QByteArray> requestLine = head.left(head.indexOf("\r\n")).split(' ');
    const QString path = requestLine.size() > 1 ? QString::fromLatin1(requestLine[1]) : QString();
    ++requests_[path];
    const Response response = responses_.value(path, Response{404, "not found", {}, Behaviour::whole, 0});

    QByteArray out = "HTTP/1.1 " + QByteArray::number(response.status) + " Canned\r\n";
    out += "Content-Length: " + QByteArray::number(response.body.size()) + "\r\nConnection: close\r\n";
    for (const auto& [name, value] : response.headers) out += name + ": " + value + "\r\n";
    out += "\r\n";
    if (response.behaviour == Behaviour::whole) {
        socket->write(out + response.body);
        socket->disconnectFromHost();
        return;
    }
    socket->write(out + response.body.left(response.sentBeforeStall));
    if (response.behaviour == Behaviour::cut) socket->disconnectFromHost();
}

} // namespace lumabroom::test
