#include "UpdateTestSupport.h"

#include "host/Locale.h"
#include "host/Settings.h"
#include "support/TempTree.h"
#include "support/Text.h"
#include "text/Localization.h"
#include "update/UpdateSignature.h"
#include "update/UpdateTexts.h"
#include "update/Updater.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QNetworkProxy>
#include <QProcess>
#include <QTcpServer>
#include <QTimer>

#include <gtest/gtest.h>

using namespace lumabroom;
using namespace lumabroom::test;
using Behaviour = TestServer::Behaviour;

namespace {

QString chinese(std::string_view key) { return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size())); }

QStringList entries(const std::filesystem::path& folder) {
    return QDir(QString::fromStdString(folder.string()))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

// What an updater said first, waiting on its event loop with a deadline so that nothing hangs.
struct Heard {
    enum Kind { nothing, available, upToDate, checkFailed, downloaded, downloadFailed } kind = nothing;
    QString text; // the sentence, the offered version or the downloaded file
};

Heard listen(Updater& updater, const std::function<void()>& act, int seconds = 10) {
    Heard heard;
    QEventLoop loop;
    QObject context;
    const auto hear = [&](Heard::Kind kind, const QString& text) {
        if (heard.kind == Heard::nothing) heard = {kind, text};
        loop.quit();
    };
    QObject::connect(&updater, &Updater::updateAvailable, &context,
                     [&](const AppcastItem& item) { hear(Heard::available, item.version); });
    QObject::connect(&updater, &Updater::upToDate, &context, [&](const QString& s) { hear(Heard::upToDate, s); });
    QObject::connect(&updater, &Updater::checkFailed, &context, [&](const QString& s) { hear(Heard::checkFailed, s); });
    QObject::connect(&updater, &Updater::downloadFinished, &context,
                     [&](const QString& s) { hear(Heard::downloaded, s); });
    QObject::connect(&updater, &Updater::downloadFailed, &context,
                     [&](const QString& s) { hear(Heard::downloadFailed, s); });
    // A check that ends in silence tells only by making checks possible again.
    QObject::connect(&updater, &Updater::canCheckForUpdatesChanged, &context, [&](bool can) {
        if (can) QTimer::singleShot(0, &context, [&] { loop.quit(); });
    });
    bool expired = false;
    QTimer::singleShot(seconds * 1000, &context, [&] {
        expired = true;
        loop.quit();
    });
    act();
    while (heard.kind == Heard::nothing && !updater.canCheckForUpdates() && !expired) loop.exec();
    EXPECT_FALSE(expired) << "the updater said nothing in time";
    return heard;
}

QByteArray feedOf(const QList<std::tuple<QString, QUrl, qint64, QByteArray>>& releases) {
    QByteArray xml = R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:lumabroom="https://lumabroom.app/xml-namespaces/appcast"><channel><title>Lumabroom</title>)";
    for (const auto& [version, url, length, sig] : releases) {
        xml += "<item><title>Lumabroom " + version.toUtf8() + "</title><lumabroom:version>" + version.toUtf8()
               + "</lumabroom:version><description>notes</description><enclosure url=\"" + url.toEncoded()
               + "\" length=\"" + QByteArray::number(length) + "\" type=\"application/gzip\" lumabroom:edSignature=\""
               + sig + "\"/></item>";
    }
    return xml + "</channel></rss>";
}

class UpdaterTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        ensureApplication();
        QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
        Localization::setLanguageForThisRun(AppLanguage::chinese);
    }

    void SetUp() override {
        Settings::useFolder(tree.dir("settings"));
        Settings::setString("updateFeedURL", server.url(QStringLiteral("/appcast.xml")).toString().toStdString());
        // Tests ask for their checks themselves; the one at start is a case of its own.
        Updater::setAutomaticallyChecksForUpdates(false);
        server.serve(QStringLiteral("/Lumabroom-2.0.0.tar.gz"), {200, payload, {}, Behaviour::whole, 0});
    }

    Updater::Options options() const {
        Updater::Options o;
        o.currentVersion = QStringLiteral("1.9.0");
        o.builtInFeedURL = QUrl(QStringLiteral("http://127.0.0.1:9/never.xml"));
        o.publicKey = keys.publicKey;
        o.downloadFolder = QString::fromStdString((tree / "downloads").string());
        o.stallTimeout = std::chrono::milliseconds(300);
        return o;
    }

    AppcastItem releaseItem(const QString& path = QStringLiteral("/Lumabroom-2.0.0.tar.gz")) const {
        AppcastItem item;
        item.version = QStringLiteral("2.0.0");
        item.url = server.url(path);
        item.length = payload.size();
        item.signature = signature(payload, keys.secretKey);
        return item;
    }

    void serveFeed(const QByteArray& xml) {
        server.serve(QStringLiteral("/appcast.xml"), {200, xml, {}, Behaviour::whole, 0});
    }

    TempTree tree;
    TestServer server;
    KeyPair keys = makeKeys();
    QByteArray payload = QByteArray(200'000, 'p') + "end";
};

} // namespace

TEST_F(UpdaterTest, ANewerVersionIsOfferedWithItsNewestRelease) {
    const QUrl url = server.url(QStringLiteral("/Lumabroom-2.0.0.tar.gz"));
    serveFeed(
        feedOf({{"1.9.1", url, 1, "a"}, {"2.0.0", url, 2, "b"}, {"1.10.0", url, 3, "c"}, {"1.9.0", url, 4, "d"}}));
    Updater updater(options());
    updater.start();
    AppcastItem offered;
    QObject::connect(&updater, &Updater::updateAvailable, &updater, [&](const AppcastItem& item) { offered = item; });
    const Heard heard = listen(updater, [&] { updater.checkForUpdates(); });
    EXPECT_EQ(heard.kind, Heard::available);
    EXPECT_EQ(offered.version, QStringLiteral("2.0.0"));
    EXPECT_EQ(offered.title, QStringLiteral("Lumabroom 2.0.0"));
    EXPECT_EQ(offered.releaseNotes, QStringLiteral("notes"));
    EXPECT_EQ(offered.url, url);
    EXPECT_EQ(offered.length, 2);
    EXPECT_EQ(offered.signature, QByteArray("b"));
    EXPECT_TRUE(updater.canCheckForUpdates());
}

TEST_F(UpdaterTest, AUserAskedCheckSaysWhyNothingIsOffered) {
    QTcpServer closed;
    ASSERT_TRUE(closed.listen(QHostAddress::LocalHost, 0));
    const QString refused = QStringLiteral("http://127.0.0.1:%1/appcast.xml").arg(closed.serverPort());
    closed.close();
    const QUrl url = server.url(QStringLiteral("/Lumabroom-2.0.0.tar.gz"));
    server.serve(QStringLiteral("/same.xml"),
                 {200, feedOf({{"1.9", url, 1, "a"}, {"0.9.9", url, 1, "a"}}), {}, Behaviour::whole, 0});
    server.serve(QStringLiteral("/bad.xml"),
                 {200, feedOf({{"2.0.0", url, 1, "a"}}).chopped(12), {}, Behaviour::whole, 0});
    server.serve(QStringLiteral("/loop.xml"), {302, "", {{"Location", "/loop.xml"}}, Behaviour::whole, 0});
    server.serve(QStringLiteral("/stall.xml"), {200, feedOf({}), {}, Behaviour::stall, 10});
    server.serve(QStringLiteral("/cut.xml"), {200, feedOf({}), {}, Behaviour::cut, 10});
    server.serve(QStringLiteral("/gone.xml"), {500, "oops", {}, Behaviour::whole, 0});

    const struct {
        QString feed;
        Heard::Kind kind;
        QString sentence;
    } cases[] = {
        {server.url(QStringLiteral("/same.xml")).toString(), Heard::upToDate,
         QStringLiteral("当前版本 1.9.0 已是最新。")},
        {server.url(QStringLiteral("/bad.xml")).toString(), Heard::checkFailed, chinese(UpdateTexts::malformedFeed)},
        {server.url(QStringLiteral("/missing.xml")).toString(), Heard::checkFailed,
         QStringLiteral("更新服务器返回了错误 404。")},
        {server.url(QStringLiteral("/gone.xml")).toString(), Heard::checkFailed,
         QStringLiteral("更新服务器返回了错误 500。")},
        {server.url(QStringLiteral("/loop.xml")).toString(), Heard::checkFailed,
         chinese(UpdateTexts::tooManyRedirects)},
        {server.url(QStringLiteral("/stall.xml")).toString(), Heard::checkFailed, chinese(UpdateTexts::timedOut)},
        {server.url(QStringLiteral("/cut.xml")).toString(), Heard::checkFailed, chinese(UpdateTexts::unreachable)},
        {refused, Heard::checkFailed, chinese(UpdateTexts::unreachable)},
        {QStringLiteral("ftp://127.0.0.1/appcast.xml"), Heard::checkFailed, chinese(UpdateTexts::invalidFeedAddress)},
    };
    Updater updater(options());
    updater.start();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.feed.toStdString());
        Settings::setString("updateFeedURL", c.feed.toStdString());
        const Heard heard = listen(updater, [&] { updater.checkForUpdates(); });
        EXPECT_EQ(heard.kind, c.kind);
        EXPECT_EQ(heard.text, c.sentence);
        EXPECT_TRUE(updater.canCheckForUpdates());
    }
}

TEST_F(UpdaterTest, ACheckEndsInTimeEvenWhenTheServerKeepsTheConnectionBusy) {
    server.serve(QStringLiteral("/appcast.xml"), {200, feedOf({}), {}, Behaviour::stall, 10});
    Updater::Options slow = options();
    slow.stallTimeout = std::chrono::milliseconds(60'000);
    slow.checkTimeout = std::chrono::milliseconds(200);
    Updater updater(slow);
    updater.start();
    const Heard heard = listen(updater, [&] { updater.checkForUpdates(); });
    EXPECT_EQ(heard.text, chinese(UpdateTexts::timedOut));
}

TEST_F(UpdaterTest, FiveRedirectsAreFollowedAndNoMore) {
    for (int hop = 0; hop < 9; ++hop) {
        server.serve(QStringLiteral("/hop%1.xml").arg(hop),
                     {302, "", {{"Location", "/hop" + QByteArray::number(hop + 1) + ".xml"}}, Behaviour::whole, 0});
    }
    Settings::setString("updateFeedURL", server.url(QStringLiteral("/hop0.xml")).toString().toStdString());
    Updater updater(options());
    updater.start();
    const Heard heard = listen(updater, [&] { updater.checkForUpdates(); });
    EXPECT_EQ(heard.text, chinese(UpdateTexts::tooManyRedirects));
    // Qt may send a request again on a fresh connection, so only whether a hop was reached counts.
    EXPECT_NE(server.requests(QStringLiteral("/hop5.xml")), 0);
    EXPECT_EQ(server.requests(QStringLiteral("/hop6.xml")), 0);
}

TEST_F(UpdaterTest, ABackgroundCheckSpeaksOnlyOfANewerVersion) {
    const QUrl url = server.url(QStringLiteral("/Lumabroom-2.0.0.tar.gz"));
    server.serve(QStringLiteral("/newer.xml"), {200, feedOf({{"1.10", url, 1, "a"}}), {}, Behaviour::whole, 0});
    server.serve(QStringLiteral("/same.xml"), {200, feedOf({{"1.9.0", url, 1, "a"}}), {}, Behaviour::whole, 0});
    server.serve(QStringLiteral("/bad.xml"), {200, "<rss><channel>", {}, Behaviour::whole, 0});
    server.serve(QStringLiteral("/stall.xml"), {200, feedOf({}), {}, Behaviour::stall, 0});
    const struct {
        const char* path;
        Heard::Kind kind;
    } cases[] = {{"/newer.xml", Heard::available},
                 {"/same.xml", Heard::nothing},
                 {"/bad.xml", Heard::nothing},
                 {"/missing.xml", Heard::nothing},
                 {"/stall.xml", Heard::nothing}};
    Updater updater(options());
    updater.start();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        Settings::setString("updateFeedURL", server.url(QString::fromLatin1(c.path)).toString().toStdString());
        const Heard heard = listen(updater, [&] { updater.checkInBackground(); });
        EXPECT_EQ(heard.kind, c.kind);
        EXPECT_NE(server.requests(QString::fromLatin1(c.path)), 0); // the check did run
    }
}

TEST_F(UpdaterTest, ChecksBeginAtStartOnlyWhenAutomaticAndNeverOverlap) {
    serveFeed(feedOf({}));
    {
        Updater updater(options());
        EXPECT_FALSE(updater.canCheckForUpdates());
        updater.checkForUpdates(); // before start: the service has not said a check is possible
        EXPECT_EQ(server.requests(QStringLiteral("/appcast.xml")), 0);
    }
    for (const bool automatic : {false, true}) {
        SCOPED_TRACE(automatic);
        Updater::setAutomaticallyChecksForUpdates(automatic);
        EXPECT_EQ(Updater::automaticallyChecksForUpdates(), automatic);
        const int before = server.requests(QStringLiteral("/appcast.xml"));
        Updater updater(options());
        std::vector<bool> changes;
        QObject::connect(&updater, &Updater::canCheckForUpdatesChanged, &updater,
                         [&](bool can) { changes.push_back(can); });
        const Heard heard = listen(updater, [&] {
            updater.start();
            updater.checkForUpdates(); // ignored while the launch check runs
        });
        EXPECT_EQ(server.requests(QStringLiteral("/appcast.xml")) - before, 1);
        EXPECT_EQ(heard.kind, automatic ? Heard::nothing : Heard::upToDate);
        EXPECT_EQ(changes, (std::vector<bool>{true, false, true}));
    }
}

TEST_F(UpdaterTest, TheFeedSettingOverridesTheBuiltInLocation) {
    Updater updater(options());
    EXPECT_EQ(updater.feedURL(), server.url(QStringLiteral("/appcast.xml")));
    Settings::remove("updateFeedURL");
    EXPECT_EQ(updater.feedURL(), QUrl(QStringLiteral("http://127.0.0.1:9/never.xml")));
    Settings::remove("automaticallyChecksForUpdates");
    EXPECT_TRUE(Updater::automaticallyChecksForUpdates());
}

TEST_F(UpdaterTest, OnlyAVerifiedDownloadIsKeptAndHandedOver) {
    Updater updater(options());
    updater.start();
    QStringList handedOver;
    updater.setHandOver([&](const QString& path) { handedOver << path; });
    qint64 lastReceived = -1, lastTotal = -1;
    QObject::connect(&updater, &Updater::downloadProgress, &updater, [&](qint64 received, qint64 total) {
        lastReceived = received;
        lastTotal = total;
    });
    const Heard heard = listen(updater, [&] { updater.download(releaseItem()); });
    const QString target = QString::fromStdString((tree / "downloads" / "Lumabroom-2.0.0.tar.gz").string());
    EXPECT_EQ(heard.kind, Heard::downloaded);
    EXPECT_EQ(heard.text, target);
    EXPECT_EQ(handedOver, QStringList{target});
    EXPECT_EQ(entries(tree / "downloads"), QStringList{QStringLiteral("Lumabroom-2.0.0.tar.gz")});
    QFile file(target);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), payload);
    EXPECT_EQ(lastReceived, payload.size());
    EXPECT_EQ(lastTotal, payload.size());
    EXPECT_TRUE(updater.canCheckForUpdates());
}

TEST_F(UpdaterTest, AFailedDownloadSaysWhyAndLeavesNothingBehind) {
    const QByteArray shortBody = payload.left(1000);
    server.serve(QStringLiteral("/short"), {200, shortBody, {}, Behaviour::whole, 0});
    server.serve(QStringLiteral("/long"), {200, payload + "more", {}, Behaviour::whole, 0});
    server.serve(QStringLiteral("/cut"), {200, payload, {}, Behaviour::cut, 5000});
    server.serve(QStringLiteral("/stall"), {200, payload, {}, Behaviour::stall, 5000});
    server.serve(QStringLiteral("/loop"), {307, "", {{"Location", "/loop"}}, Behaviour::whole, 0});

    AppcastItem forged = releaseItem();
    forged.signature = signature(payload + "x", keys.secretKey);
    AppcastItem unsigned_ = releaseItem();
    unsigned_.signature.clear();
    const auto at = [&](const char* path) { return releaseItem(QString::fromLatin1(path)); };
    AppcastItem shortButHonest = at("/short");
    shortButHonest.length = shortBody.size(); // the length agrees, but the signature is of the whole file

    const struct {
        const char* name;
        AppcastItem item;
        QString sentence;
    } cases[] = {
        {"signature of other content", forged, chinese(UpdateTexts::badSignature)},
        {"no signature", unsigned_, chinese(UpdateTexts::badSignature)},
        {"body shorter than the feed says", at("/short"), chinese(UpdateTexts::wrongLength)},
        {"short body of the right length", shortButHonest, chinese(UpdateTexts::badSignature)},
        {"body longer than the feed says", at("/long"), chinese(UpdateTexts::wrongLength)},
        {"connection closed midway", at("/cut"), chinese(UpdateTexts::wrongLength)},
        {"server stalls midway", at("/stall"), chinese(UpdateTexts::timedOut)},
        {"not found", at("/missing"), QStringLiteral("更新服务器返回了错误 404。")},
        {"redirect loop", at("/loop"), chinese(UpdateTexts::tooManyRedirects)},
    };
    Updater updater(options());
    updater.start();
    int handedOver = 0;
    updater.setHandOver([&](const QString&) { ++handedOver; });
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Heard heard = listen(updater, [&] { updater.download(c.item); });
        EXPECT_EQ(heard.kind, Heard::downloadFailed);
        EXPECT_EQ(heard.text, c.sentence);
        EXPECT_EQ(entries(tree / "downloads"), QStringList());
        EXPECT_TRUE(updater.canCheckForUpdates());
    }
    EXPECT_EQ(handedOver, 0);

    // Quitting while a download runs leaves nothing either (where the system can, the partial file
    // has no name until it is verified, so there is nothing to see before).
    {
        Updater quitting(options());
        quitting.start();
        quitting.download(at("/stall"));
        const QDeadlineTimer deadline(10'000);
        while (server.requests(QStringLiteral("/stall")) < 2 && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
        EXPECT_EQ(server.requests(QStringLiteral("/stall")), 2);
    }
    EXPECT_EQ(entries(tree / "downloads"), QStringList());

    Updater noKey([&] {
        Updater::Options o = options();
        o.publicKey = "not a key";
        return o;
    }());
    noKey.start();
    const Heard heard = listen(noKey, [&] { noKey.download(releaseItem()); });
    EXPECT_EQ(heard.text, chinese(UpdateTexts::badSignature));
    EXPECT_EQ(entries(tree / "downloads"), QStringList());
}

TEST(UpdateSignature, AcceptsOnlyTheSignatureOfTheWholeContentByTheKey) {
    const KeyPair keys = makeKeys();
    const KeyPair other = makeKeys();
    const QByteArray content = "release";
    const struct {
        const char* name;
        QByteArray message;
        QByteArray signature;
        QByteArray publicKey;
        bool valid;
    } cases[] = {
        {"good", content, signature(content, keys.secretKey), keys.publicKey, true},
        {"empty content", "", signature("", keys.secretKey), keys.publicKey, true},
        {"changed content", "releasE", signature(content, keys.secretKey), keys.publicKey, false},
        {"other key", content, signature(content, other.secretKey), keys.publicKey, false},
        {"no key", content, signature(content, keys.secretKey), "", false},
        {"key not base64", content, signature(content, keys.secretKey), "!!" + keys.publicKey.mid(2), false},
        {"signature cut", content, signature(content, keys.secretKey).left(40), keys.publicKey, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(UpdateSignature::verify(c.message, c.signature, c.publicKey), c.valid);
    }
}

TEST(UpdateSignature, TheSigningToolSignsWhatTheUpdaterAccepts) {
    TempTree tree;
    const QString tool = QStringLiteral(LUMABROOM_SIGN_UPDATE_PATH);
    const QString secret = QString::fromStdString((tree / "secret.key").string());
    writeText(tree / "Lumabroom.tar.gz", "the release");
    const QString release = QString::fromStdString((tree / "Lumabroom.tar.gz").string());

    QProcess generate;
    generate.start(tool, {QStringLiteral("generate-keys"), secret});
    ASSERT_TRUE(generate.waitForFinished(10'000));
    ASSERT_EQ(generate.exitCode(), 0);
    const QByteArray publicKey = generate.readAllStandardOutput().trimmed();
    EXPECT_EQ(QFile(secret).permissions() & (QFileDevice::ReadGroup | QFileDevice::ReadOther),
              QFileDevice::Permissions());

    QProcess again;
    again.start(tool, {QStringLiteral("generate-keys"), secret});
    ASSERT_TRUE(again.waitForFinished(10'000));
    EXPECT_EQ(again.exitCode(), 1); // never overwrites a key

    QProcess sign;
    sign.start(tool, {QStringLiteral("sign"), secret, release});
    ASSERT_TRUE(sign.waitForFinished(10'000));
    ASSERT_EQ(sign.exitCode(), 0);
    const QByteArray line = sign.readAllStandardOutput().trimmed();
    ASSERT_TRUE(line.startsWith("lumabroom:edSignature=\"")) << line.constData();
    EXPECT_TRUE(line.endsWith("\" length=\"11\"")) << line.constData();
    const QByteArray sig = line.mid(23, line.indexOf('"', 23) - 23);
    EXPECT_TRUE(UpdateSignature::verifyFile(release, sig, publicKey));
    EXPECT_FALSE(UpdateSignature::verifyFile(release, sig, makeKeys().publicKey));
}

TEST(UpdateTexts, EverySentenceHasAnEnglishRow) {
    for (std::string_view key : UpdateTexts::all) {
        SCOPED_TRACE(std::string(key));
        const auto english = Locale::translation("en", "Updater", key, std::nullopt);
        ASSERT_TRUE(english);
        EXPECT_FALSE(english->empty() || containsCjk(*english));
        EXPECT_EQ(english->find("%1") != std::string::npos, key.find("%1") != std::string_view::npos);
    }
    // What the user reads goes through the same table.
    Localization::setLanguageForThisRun(AppLanguage::english);
    EXPECT_EQ(UpdateTexts::text(UpdateTexts::notSaved),
              *Locale::translation("en", "Updater", UpdateTexts::notSaved, std::nullopt));
    EXPECT_EQ(UpdateTexts::text(UpdateTexts::httpError, {"404"}).find("404") != std::string::npos, true);
    Localization::setLanguageForThisRun(AppLanguage::chinese);
    EXPECT_EQ(UpdateTexts::text(UpdateTexts::notSaved), std::string(UpdateTexts::notSaved));
}
