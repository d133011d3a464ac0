#pragma once

#include <QObject>
#include <QString>

class QLocalServer;

namespace lumabroom {

// One running application per user: the first launch listens on a local socket, and a later
// launch hands the running one a knock and ends.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    // The socket's name for the current user.
    static QString defaultName();

    explicit SingleInstance(QString name = defaultName(), QObject* parent = nullptr);
    ~SingleInstance() override;

    // True if another instance answered the knock; this one should then end. Otherwise this one
    // listens from now on.
    bool knockOnRunning();

Q_SIGNALS:
    // A later launch wants the window in front.
    void activationRequested();

private:
    QString name_;
    QLocalServer* server_ = nullptr;
};

} // namespace lumabroom
