#include "update/Appcast.h"

#include <gtest/gtest.h>

using namespace lumabroom;

namespace {

AppcastItem release(const char* version, const char* title = "") {
    AppcastItem item;
    item.version = QString::fromLatin1(version);
    item.title = QString::fromLatin1(title);
    item.url = QUrl(QStringLiteral("https://example.invalid/a.zip"));
    return item;
}

} // namespace

TEST(Appcast, VersionsCompareNumericallyPerDottedComponent) {
    const struct {
        const char* a;
        const char* b;
        int expected;
    } cases[] = {
        {"0.10.0", "0.9.1", 1}, {"0.9.1", "0.10.0", -1}, {"1.2", "1.2.0", 0},        {"1.2.0.1", "1.2", 1},
        {"2", "1.99.99", 1},    {"1.0.0", "1.0.0", 0},   {"1.2.3-beta", "1.2.3", 0}, {" 1.4 ", "1.4.0", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.a) + " vs " + c.b);
        EXPECT_EQ(Appcast::compareVersions(QString::fromLatin1(c.a), QString::fromLatin1(c.b)), c.expected);
    }
}

TEST(Appcast, ReadsEachReleaseAndSkipsThoseThatCannotBeComparedOrFetched) {
    const QByteArray feed = R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:lumabroom="https://lumabroom.app/xml-namespaces/appcast">
  <channel>
    <title>Lumabroom</title>
    <item>
      <title>Lumabroom 0.10.0</title>
      <lumabroom:version>0.10.0</lumabroom:version>
      <pubDate>Tue, 03 Nov 2026 10:15:00 +0100</pubDate>
      <description><![CDATA[<ul><li>快了</li></ul>]]></description>
      <enclosure url="files/Lumabroom-0.10.0.tar.gz" length="123456" type="application/gzip"
                 lumabroom:edSignature=" c2lnbmF0dXJl "/>
    </item>
    <item>
      <title>No version</title>
      <enclosure url="https://example.invalid/x.zip" length="1"/>
    </item>
    <item>
      <lumabroom:version>0.11.0</lumabroom:version>
      <enclosure url="ftp://example.invalid/x.zip" length="1"/>
    </item>
    <item>
      <title>Version on the enclosure</title>
      <enclosure url="https://example.invalid/y.zip" lumabroom:version="0.9.1" length="-4"/>
      <unknown><nested/></unknown>
    </item>
  </channel>
</rss>)";
    const auto items = Appcast::parse(feed, QUrl(QStringLiteral("https://lumabroom.app/feed/appcast.xml")));
    ASSERT_TRUE(items);
    ASSERT_EQ(items->size(), 2u);

    AppcastItem first;
    first.version = QStringLiteral("0.10.0");
    first.title = QStringLiteral("Lumabroom 0.10.0");
    first.releaseNotes = QStringLiteral("<ul><li>快了</li></ul>");
    first.published = QDateTime(QDate(2026, 11, 3), QTime(9, 15), Qt::UTC);
    first.url = QUrl(QStringLiteral("https://lumabroom.app/feed/files/Lumabroom-0.10.0.tar.gz"));
    first.length = 123456;
    first.signature = "c2lnbmF0dXJl";
    EXPECT_EQ((*items)[0], first);

    EXPECT_EQ((*items)[1].version, QStringLiteral("0.9.1"));
    EXPECT_EQ((*items)[1].url, QUrl(QStringLiteral("https://example.invalid/y.zip")));
    EXPECT_EQ((*items)[1].length, 0);
    EXPECT_FALSE((*items)[1].published.isValid());
}

TEST(Appcast, AFeedWithoutReleasesIsEmptyAndDamagedOrForeignDocumentsAreNothing) {
    const auto empty = Appcast::parse("<rss version=\"2.0\"><channel><title>t</title></channel></rss>");
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->size(), 0u);

    const char* broken[] = {
        "",
        "not xml at all",
        "<html><body/></html>",
        "<rss><channel><item><title>cut</title>",
        "<rss><channel><item><title>a</item></channel></rss>",
        "<rss><channel></channel></rss><rss/>",
    };
    for (const char* text : broken) {
        SCOPED_TRACE(text);
        EXPECT_FALSE(Appcast::parse(text));
    }
}

TEST(Appcast, TheNewestReleaseNewerThanTheRunningOneIsOffered) {
    const std::vector<AppcastItem> items{release("0.9.1"), release("0.10.0", "first"), release("0.10.0", "second"),
                                         release("0.2.0")};
    const struct {
        const char* current;
        const char* offeredTitle; // nullptr: nothing offered
    } cases[] = {{"0.9.5", "first"}, {"0.1", "first"}, {"0.10.0", nullptr}, {"0.10", nullptr}, {"1.0", nullptr}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.current);
        const auto offered = Appcast::newestNewerThan(items, QString::fromLatin1(c.current));
        ASSERT_EQ(offered.has_value(), c.offeredTitle != nullptr);
        if (offered) {
            EXPECT_EQ(offered->title, QString::fromLatin1(c.offeredTitle));
        }
    }
}
