#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUrl>

#include <optional>
#include <span>
#include <vector>

namespace lumabroom {

// One release as the feed describes it.
struct AppcastItem {
    QString version; // dotted numbers, "0.10.2"
    QString title;
    QString releaseNotes; // the item's description, as the feed gives it (often HTML)
    QDateTime published;  // invalid when the feed gives no readable date
    QUrl url;             // of the download, resolved against the feed's location
    qint64 length = 0;    // bytes the download must have; 0 when the feed doesn't say
    QByteArray signature; // Ed25519 over the whole download, base64
    bool operator==(const AppcastItem&) const = default;
};

namespace Appcast {

// The namespace of the feed's own elements and attributes.
inline constexpr char xmlNamespace[] = "https://lumabroom.app/xml-namespaces/appcast";

// The releases of an RSS 2.0 feed, in the feed's order. Nothing when the text is not well-formed
// XML or not an RSS document. An item without a version or without an http(s) download is
// skipped, since it can be neither compared nor fetched.
std::optional<std::vector<AppcastItem>> parse(const QByteArray& xml, const QUrl& feedURL = {});

// Negative, zero or positive as `a` is older than, the same as or newer than `b`. Dotted
// components compare as numbers, and a missing one counts as 0: "0.10.0" > "0.9.1", "1.2" == "1.2.0".
int compareVersions(const QString& a, const QString& b);

// The newest release newer than `current`; the first of equals wins.
std::optional<AppcastItem> newestNewerThan(std::span<const AppcastItem> items, const QString& current);

} // namespace Appcast

} // namespace lumabroom
