#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QPair>
#include <QTcpServer>
#include <QUrl>

#include <ostream>

// Readable failure messages.
inline void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }
inline void PrintTo(const QStringList& texts, std::ostream* out) {
    *out << '[' << texts.join(u'|').toStdString() << ']';
}

namespace lumabroom::test {

// A QCoreApplication for the process, made once, for tests that need an event loop.
void ensureApplication();

// An Ed25519 key pair of the test's own.
struct KeyPair {
    QByteArray publicKey; // base64
    QByteArray secretKey; // raw
};
KeyPair makeKeys();
// The detached signature of `content`, base64.
QByteArray signature(const QByteArray& content, const QByteArray& secretKey);

// A tiny HTTP/1.1 server on 127.0.0.1 that answers each path with a canned response and closes
// the connection. Paths it doesn't know answer 404.
class TestServer {
public:
    enum class Behaviour {
        whole, // the whole response
        stall, // the head and `sentBeforeStall` bytes of the body, then nothing, with the connection left open
        cut,   // the head, which promises the whole body, and `sentBeforeStall` bytes, then the connection closes
    };
    struct Response {
        int status = 200;
        QByteArray body;
        QList<QPair<QByteArray, QByteArray>> headers;
        Behaviour behaviour = Behaviour::whole;
        qsizetype sentBeforeStall = 0;
    };

    TestServer();
    QUrl url(const QString& path) const;
    void serve(const QString& path, Response response);
    int requests(const QString& path) const { return requests_.value(path); }

private:
    void answer(class QTcpSocket* socket, const QByteArray& head);

    QTcpServer server_;
    QMap<QString, Response> responses_;
    QMap<QString, int> requests_;
};

} // namespace lumabroom::test
