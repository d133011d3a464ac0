#pragma once

#include "update/Appcast.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>

class QNetworkAccessManager;
class QNetworkReply;
class QNetworkRequest;
class QTemporaryFile;
class QTimer;

namespace lumabroom {

// Finds, fetches and verifies new releases from the appcast. One instance lives as long as the
// window; every call comes from the main thread, and the network work runs on its event loop.
class Updater : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool canCheckForUpdates READ canCheckForUpdates NOTIFY canCheckForUpdatesChanged)

public:
    // What a build fixes; tests replace it to talk to their own server with their own key.
    struct Options {
        QString currentVersion; // the running version; the build's when empty
        QUrl builtInFeedURL;    // the build's when empty; the setting "updateFeedURL" overrides it
        QByteArray publicKey;   // Ed25519, base64; the build's when empty
        QString downloadFolder; // the user's Downloads (or the cache folder) when empty
        std::chrono::milliseconds stallTimeout{20'000}; // no byte for this long ends a transfer
        std::chrono::milliseconds checkTimeout{60'000}; // a check takes no longer, however the feed trickles in
        int redirectLimit = 5;
        qint64 feedSizeLimit = 4 * 1024 * 1024;
    };

    explicit Updater(QObject* parent = nullptr);
    explicit Updater(Options options, QObject* parent = nullptr);
    ~Updater() override;

    // True once started, while neither a check nor a download runs.
    bool canCheckForUpdates() const { return canCheck_; }

    // The setting "automaticallyChecksForUpdates"; on unless stored off.
    static bool automaticallyChecksForUpdates();
    static void setAutomaticallyChecksForUpdates(bool on);

    QUrl feedURL() const;
    QString currentVersion() const { return options_.currentVersion; }

    // At launch: checks are possible from now on, and one background check runs when automatic.
    void start();
    // Says something only when a newer version exists.
    void checkInBackground();
    // The user asked: also says that the version is the latest, or why the check failed.
    void checkForUpdates();
    // Fetches the release into the download folder, checks its length and signature, and hands
    // over only a verified file; a failed download leaves no file behind.
    void download(const AppcastItem& item);

    // Where a verified download goes next (opened, or shown in the file manager); the window sets it.
    void setHandOver(std::function<void(const QString& path)> handOver) { handOver_ = std::move(handOver); }

Q_SIGNALS:
    void canCheckForUpdatesChanged(bool canCheck);
    void updateAvailable(const lumabroom::AppcastItem& item);
    void upToDate(const QString& sentence);
    void checkFailed(const QString& sentence);
    void downloadProgress(qint64 received, qint64 total);
    void downloadFinished(const QString& path);
    void downloadFailed(const QString& sentence);

private:
    enum class Abort { none, stalled, tooLarge, wrongLength, notSaved };

    void check(bool userAsked);
    QNetworkReply* get(const QUrl& url);
    void watch(QNetworkReply* reply);
    void abort(Abort reason);
    QString failure(QNetworkReply& reply) const;
    void finishCheck(bool userAsked);
    void finishDownload(const AppcastItem& item);
    void failDownload(const QString& sentence);
    void setCanCheck(bool canCheck);

    Options options_;
    std::unique_ptr<QNetworkAccessManager> network_;
    QPointer<QNetworkReply> reply_;
    QTimer* stallTimer_ = nullptr;
    QTimer* checkTimer_ = nullptr;
    std::unique_ptr<QTemporaryFile> partial_;
    QByteArray feed_;
    qint64 received_ = 0;
    Abort abort_ = Abort::none;
    bool started_ = false;
    bool canCheck_ = false;
    std::function<void(const QString&)> handOver_;
};

} // namespace lumabroom
