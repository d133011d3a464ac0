#include "update/Updater.h"

#include "host/Settings.h"
#include "update/UpdateSignature.h"
#include "update/UpdateTexts.h"

#include <QDir>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QTimer>

#include <filesystem>

namespace lumabroom {

namespace {

constexpr std::string_view automaticKey = "automaticallyChecksForUpdates";
constexpr std::string_view feedKey = "updateFeedURL";

QString sentence(std::string_view key, const std::vector<std::string>& values = {}) {
    return QString::fromStdString(UpdateTexts::text(key, values));
}

bool isFetchable(const QUrl& url) {
    return url.isValid() && (url.scheme() == u"https" || url.scheme() == u"http") && !url.host().isEmpty();
}

int httpStatus(const QNetworkReply& reply) { return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(); }

QString downloadName(const AppcastItem& item) {
    const QString name = QFileInfo(item.url.path()).fileName();
    if (name.isEmpty() || name.startsWith(u'.')) return QStringLiteral("Lumabroom-%1").arg(item.version);
    return name;
}

Updater::Options completed(Updater::Options options) {
    if (options.currentVersion.isEmpty()) options.currentVersion = QStringLiteral(LUMABROOM_VERSION);
    if (options.builtInFeedURL.isEmpty()) options.builtInFeedURL = QUrl(QStringLiteral(LUMABROOM_UPDATE_FEED_URL));
    if (options.publicKey.isEmpty()) options.publicKey = QByteArrayLiteral(LUMABROOM_UPDATE_PUBLIC_KEY);
    if (options.downloadFolder.isEmpty()) {
        options.downloadFolder = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
        if (options.downloadFolder.isEmpty())
            options.downloadFolder =
                QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + QStringLiteral("/updates");
    }
    return options;
}

} // namespace

Updater::Updater(QObject* parent) : Updater(Options{}, parent) {}

Updater::Updater(Options options, QObject* parent)
    : QObject(parent),
      options_(completed(std::move(options))),
      network_(std::make_unique<QNetworkAccessManager>()),
      stallTimer_(new QTimer(this)),
      checkTimer_(new QTimer(this)) {
    for (auto [timer, interval] :
         {std::pair{stallTimer_, options_.stallTimeout}, std::pair{checkTimer_, options_.checkTimeout}}) {
        timer->setSingleShot(true);
        timer->setInterval(interval);
        connect(timer, &QTimer::timeout, this, [this] { abort(Abort::stalled); });
    }
}

Updater::~Updater() {
    // Its finished signal must not reach a half-destroyed updater.
    if (reply_) {
        reply_->disconnect(this);
        reply_->abort();
    }
}

bool Updater::automaticallyChecksForUpdates() {
    const auto stored = Settings::string(automaticKey);
    return !(stored && (*stored == "false" || *stored == "0"));
}

void Updater::setAutomaticallyChecksForUpdates(bool on) { Settings::setString(automaticKey, on ? "true" : "false"); }

QUrl Updater::feedURL() const {
    if (const auto stored = Settings::string(feedKey); stored && !stored->empty())
        return QUrl(QString::fromStdString(*stored).trimmed());
    return options_.builtInFeedURL;
}

void Updater::start() {
    if (started_) return;
    started_ = true;
    setCanCheck(true);
    if (automaticallyChecksForUpdates()) checkInBackground();
}

void Updater::checkInBackground() { check(false); }

void Updater::checkForUpdates() { check(true); }

void Updater::setCanCheck(bool canCheck) {
    if (canCheck_ == canCheck) return;
    canCheck_ = canCheck;
    Q_EMIT canCheckForUpdatesChanged(canCheck);
}

QNetworkReply* Updater::get(const QUrl& url) {
    QNetworkRequest request(url);
    request.setMaximumRedirectsAllowed(options_.redirectLimit);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    // A backstop behind the stall timer, which speaks first and so names the failure.
    request.setTransferTimeout(static_cast<int>(options_.stallTimeout.count()) + 1000);
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Lumabroom/%1").arg(options_.currentVersion));
    abort_ = Abort::none;
    reply_ = network_->get(request);
    // Progress signals are throttled; data is not.
    connect(reply_, &QNetworkReply::readyRead, stallTimer_, qOverload<>(&QTimer::start));
    connect(reply_, &QNetworkReply::metaDataChanged, stallTimer_, qOverload<>(&QTimer::start));
    stallTimer_->start();
    return reply_;
}

void Updater::abort(Abort reason) {
    if (!reply_) return;
    if (abort_ == Abort::none) abort_ = reason;
    reply_->abort();
}

QString Updater::failure(QNetworkReply& reply) const {
    switch (abort_) {
    case Abort::stalled: return sentence(UpdateTexts::timedOut);
    case Abort::tooLarge: return sentence(UpdateTexts::malformedFeed);
    case Abort::wrongLength: return sentence(UpdateTexts::wrongLength);
    case Abort::notSaved: return sentence(UpdateTexts::notSaved);
    case Abort::none: break;
    }
    switch (reply.error()) {
    case QNetworkReply::TooManyRedirectsError: return sentence(UpdateTexts::tooManyRedirects);
    case QNetworkReply::TimeoutError:
    case QNetworkReply::OperationCanceledError: return sentence(UpdateTexts::timedOut);
    default: break;
    }
    if (const int status = httpStatus(reply); status >= 300)
        return sentence(UpdateTexts::httpError, {std::to_string(status)});
    return sentence(UpdateTexts::unreachable);
}

void Updater::check(bool userAsked) {
    if (!canCheck_) return;
    const QUrl url = feedURL();
    if (!isFetchable(url)) {
        if (userAsked) Q_EMIT checkFailed(sentence(UpdateTexts::invalidFeedAddress));
        return;
    }
    setCanCheck(false);
    feed_.clear();
    checkTimer_->start();
    QNetworkReply* reply = get(url);
    connect(reply, &QNetworkReply::readyRead, this, [this, reply] {
        feed_ += reply->readAll();
        if (feed_.size() > options_.feedSizeLimit) abort(Abort::tooLarge);
    });
    connect(reply, &QNetworkReply::finished, this, [this, userAsked] { finishCheck(userAsked); });
}

void Updater::finishCheck(bool userAsked) {
    stallTimer_->stop();
    checkTimer_->stop();
    QNetworkReply* reply = reply_;
    reply_.clear();
    reply->deleteLater();
    if (reply->isOpen()) feed_ += reply->readAll();
    const int status = httpStatus(*reply);
    const bool failed =
        abort_ != Abort::none || reply->error() != QNetworkReply::NoError || status < 200 || status >= 300;
    std::optional<std::vector<AppcastItem>> items;
    if (!failed) items = Appcast::parse(feed_, reply->url());
    feed_.clear();
    setCanCheck(true);
    if (failed || !items) {
        if (userAsked) Q_EMIT checkFailed(failed ? failure(*reply) : sentence(UpdateTexts::malformedFeed));
        return;
    }
    if (auto newest = Appcast::newestNewerThan(*items, options_.currentVersion)) {
        Q_EMIT updateAvailable(*newest);
    } else if (userAsked) {
        Q_EMIT upToDate(sentence(UpdateTexts::upToDate, {options_.currentVersion.toStdString()}));
    }
}

void Updater::download(const AppcastItem& item) {
    if (!canCheck_) return;
    setCanCheck(false);
    received_ = 0;
    if (!isFetchable(item.url)) return failDownload(sentence(UpdateTexts::invalidFeedAddress));
    if (!QDir().mkpath(options_.downloadFolder)) return failDownload(sentence(UpdateTexts::notSaved));
    // Beside the destination, so that the final rename stays on one file system.
    partial_ =
        std::make_unique<QTemporaryFile>(options_.downloadFolder + QStringLiteral("/.lumabroom-download-XXXXXX.part"));
    if (!partial_->open()) return failDownload(sentence(UpdateTexts::notSaved));

    QNetworkReply* reply = get(item.url);
    connect(reply, &QNetworkReply::readyRead, this, [this, reply, expected = item.length] {
        const QByteArray data = reply->readAll();
        received_ += data.size();
        if (expected > 0 && received_ > expected) return abort(Abort::wrongLength);
        if (partial_->write(data) != data.size()) abort(Abort::notSaved);
    });
    connect(reply, &QNetworkReply::downloadProgress, this,
            [this, expected = item.length](qint64 received, qint64 total) {
                Q_EMIT downloadProgress(received, expected > 0 ? expected : total);
            });
    connect(reply, &QNetworkReply::finished, this, [this, item] { finishDownload(item); });
}

void Updater::finishDownload(const AppcastItem& item) {
    stallTimer_->stop();
    QNetworkReply* reply = reply_;
    reply_.clear();
    reply->deleteLater();
    if (abort_ == Abort::none && reply->isOpen()) {
        const QByteArray rest = reply->readAll();
        received_ += rest.size();
        if (partial_->write(rest) != rest.size()) abort_ = Abort::notSaved;
    }
    const int status = httpStatus(*reply);
    const auto error = reply->error();
    if (abort_ != Abort::none || error != QNetworkReply::NoError || status < 200 || status >= 300) {
        // A connection that closed early is a short file, whatever the transport called it.
        const bool cutShort = abort_ == Abort::none && status < 300 && item.length > 0 && received_ < item.length
                              && error != QNetworkReply::TimeoutError && error != QNetworkReply::OperationCanceledError
                              && error != QNetworkReply::TooManyRedirectsError;
        return failDownload(cutShort ? sentence(UpdateTexts::wrongLength) : failure(*reply));
    }
    if (!partial_->flush()) return failDownload(sentence(UpdateTexts::notSaved));
    if (item.length > 0 && received_ != item.length) return failDownload(sentence(UpdateTexts::wrongLength));
    if (!UpdateSignature::verifyFile(partial_->fileName(), item.signature, options_.publicKey))
        return failDownload(sentence(UpdateTexts::badSignature));

    const QString target = QDir(options_.downloadFolder).filePath(downloadName(item));
    partial_->close();
    std::error_code failed;
    std::filesystem::rename(partial_->fileName().toStdString(), target.toStdString(), failed);
    if (failed) return failDownload(sentence(UpdateTexts::notSaved));
    partial_->setAutoRemove(false);
    partial_.reset();
    setCanCheck(true);
    Q_EMIT downloadFinished(target);
    if (handOver_) handOver_(target);
}

void Updater::failDownload(const QString& sentence) {
    partial_.reset();
    setCanCheck(true);
    Q_EMIT downloadFailed(sentence);
}

} // namespace lumabroom
