#include "UpdateTestSupport.h"

#include "host/Settings.h"
#include "support/TempTree.h"
#include "support/WidgetApplication.h"
#include "text/Localization.h"
#include "update/UpdateDialog.h"
#include "update/Updater.h"

#include <QDir>
#include <QLabel>
#include <QNetworkProxy>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTextBrowser>

#include <gtest/gtest.h>


using namespace lumabroom;
using namespace lumabroom::test;

namespace {

QLabel* labelShowing(const QDialog& dialog, const QString& text) {
    for (QLabel* label : dialog.findChildren<QLabel*>())
        if (label->text() == text) return label;
    return nullptr;
}

QPushButton* button(const QDialog& dialog, const QString& text) {
    for (QPushButton* b : dialog.findChildren<QPushButton*>())
        if (b->text() == text) return b;
    return nullptr;
}

// gtest owns the environment.
[[maybe_unused]] ::testing::Environment* const widgetsApplication =
    ::testing::AddGlobalTestEnvironment(new WidgetApplication);

class UpdateDialogTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
        Localization::setLanguageForThisRun(AppLanguage::chinese);
    }

    void SetUp() override {
        Settings::useFolder(tree.dir("settings"));
        Updater::setAutomaticallyChecksForUpdates(false);
        const KeyPair keys = makeKeys();
        publicKey = keys.publicKey;
        item.version = QStringLiteral("2.0.0");
        item.releaseNotes = QStringLiteral("<p>更快的扫描</p>");
        item.url = server.url(QStringLiteral("/Lumabroom-2.0.0.tar.gz"));
        item.length = payload.size();
        item.signature = signature(payload, keys.secretKey);
    }

    Updater::Options options() const {
        Updater::Options o;
        o.currentVersion = QStringLiteral("1.9.0");
        o.publicKey = publicKey;
        o.downloadFolder = QString::fromStdString((tree / "downloads").string());
        o.stallTimeout = std::chrono::milliseconds(300);
        return o;
    }

    TempTree tree;
    TestServer server;
    QByteArray payload = QByteArray(50'000, 'p');
    QByteArray publicKey;
    AppcastItem item;
};

} // namespace

TEST_F(UpdateDialogTest, ShowsTheReleaseAndClosesOnceTheVerifiedFileIsHandedOver) {
    server.serve(QStringLiteral("/Lumabroom-2.0.0.tar.gz"), {200, payload, {}, TestServer::Behaviour::whole, 0});
    Updater updater(options());
    updater.start();
    QStringList handedOver;
    updater.setHandOver([&](const QString& path) { handedOver << path; });
    UpdateDialog dialog(updater, item);
    dialog.show();

    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("软件更新"));
    EXPECT_NE(labelShowing(dialog, QStringLiteral("新版本 2.0.0 可用")), nullptr);
    EXPECT_NE(labelShowing(dialog, QStringLiteral("你现在使用的是 1.9.0。")), nullptr);
    auto* notes = dialog.findChild<QTextBrowser*>();
    ASSERT_NE(notes, nullptr);
    EXPECT_EQ(notes->toPlainText(), QStringLiteral("更快的扫描"));
    EXPECT_EQ(notes->accessibleName(), QStringLiteral("更新说明"));
    auto* progress = dialog.findChild<QProgressBar*>();
    ASSERT_NE(progress, nullptr);
    EXPECT_FALSE(progress->isVisible());

    QPushButton* download = button(dialog, QStringLiteral("下载"));
    ASSERT_NE(download, nullptr);
    EXPECT_TRUE(download->isDefault());
    QSignalSpy finished(&dialog, &QDialog::finished);
    download->click();
    EXPECT_FALSE(download->isEnabled());
    EXPECT_TRUE(progress->isVisible());
    ASSERT_TRUE(finished.wait(10'000));
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(handedOver,
              QStringList{QString::fromStdString((tree / "downloads" / "Lumabroom-2.0.0.tar.gz").string())});
}

TEST_F(UpdateDialogTest, AFailedDownloadShowsItsSentenceAndCanBeTriedAgain) {
    server.serve(QStringLiteral("/Lumabroom-2.0.0.tar.gz"),
                 {200, payload.left(100), {}, TestServer::Behaviour::whole, 0});
    Updater updater(options());
    updater.start();
    UpdateDialog dialog(updater, item);
    dialog.show();
    QPushButton* download = button(dialog, QStringLiteral("下载"));
    ASSERT_NE(download, nullptr);
    QSignalSpy failed(&updater, &Updater::downloadFailed);
    download->click();
    ASSERT_TRUE(failed.wait(10'000));
    EXPECT_TRUE(dialog.isVisible());
    const QLabel* status = labelShowing(dialog, QStringLiteral("下载的文件大小不符,已删除。"));
    ASSERT_NE(status, nullptr);
    EXPECT_TRUE(status->isVisible());
    EXPECT_FALSE(dialog.findChild<QProgressBar*>()->isVisible());
    EXPECT_TRUE(download->isEnabled());

    server.serve(QStringLiteral("/Lumabroom-2.0.0.tar.gz"), {200, payload, {}, TestServer::Behaviour::whole, 0});
    QSignalSpy finished(&dialog, &QDialog::finished);
    download->click();
    EXPECT_FALSE(status->isVisible());
    ASSERT_TRUE(finished.wait(10'000));
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}
