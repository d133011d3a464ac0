#include "update/Appcast.h"

#include <QStringList>
#include <QXmlStreamReader>

namespace lumabroom::Appcast {

namespace {

// The leading digits of each dotted component: "2-beta" counts as 2. Empty when the first
// component has none, which makes the text no version at all.
std::vector<qint64> components(const QString& version) {
    std::vector<qint64> numbers;
    for (const QString& part : version.trimmed().split(u'.')) {
        qsizetype digits = 0;
        while (digits < part.size() && part[digits].isDigit() && part[digits].unicode() < 128) ++digits;
        if (digits == 0 && numbers.empty()) return {};
        bool ok = false;
        const qint64 number = part.left(digits).toLongLong(&ok);
        numbers.push_back(ok ? number : 0);
    }
    return numbers;
}

bool isFetchable(const QUrl& url) {
    return url.isValid() && (url.scheme() == u"https" || url.scheme() == u"http") && !url.host().isEmpty();
}

AppcastItem readItem(QXmlStreamReader& reader, const QUrl& feedURL) {
    AppcastItem item;
    QString enclosureVersion;
    while (reader.readNextStartElement()) {
        const auto name = reader.name();
        const bool ours = reader.namespaceUri() == QLatin1String(xmlNamespace);
        if (ours && name == u"version") {
            item.version = reader.readElementText().trimmed();
        } else if (reader.namespaceUri().isEmpty() && name == u"title") {
            item.title = reader.readElementText().trimmed();
        } else if (reader.namespaceUri().isEmpty() && name == u"description") {
            item.releaseNotes = reader.readElementText().trimmed();
        } else if (reader.namespaceUri().isEmpty() && name == u"pubDate") {
            item.published = QDateTime::fromString(reader.readElementText().trimmed(), Qt::RFC2822Date);
        } else if (reader.namespaceUri().isEmpty() && name == u"enclosure") {
            const QXmlStreamAttributes attributes = reader.attributes();
            item.url = feedURL.resolved(QUrl(attributes.value(QLatin1String("url")).toString().trimmed()));
            item.length = attributes.value(QLatin1String("length")).toLongLong();
            item.signature =
                attributes.value(QLatin1String(xmlNamespace), QLatin1String("edSignature")).toLatin1().trimmed();
            enclosureVersion =
                attributes.value(QLatin1String(xmlNamespace), QLatin1String("version")).toString().trimmed();
            reader.skipCurrentElement();
        } else {
            reader.skipCurrentElement();
        }
    }
    if (item.version.isEmpty()) item.version = enclosureVersion;
    if (item.length < 0) item.length = 0;
    return item;
}

} // namespace

std::optional<std::vector<AppcastItem>> parse(const QByteArray& xml, const QUrl& feedURL) {
    QXmlStreamReader reader(xml);
    if (!reader.readNextStartElement() || reader.name() != u"rss") return std::nullopt;
    std::vector<AppcastItem> items;
    while (reader.readNextStartElement()) {
        if (reader.name() != u"channel") {
            reader.skipCurrentElement();
            continue;
        }
        while (reader.readNextStartElement()) {
            if (reader.name() != u"item") {
                reader.skipCurrentElement();
                continue;
            }
            AppcastItem item = readItem(reader, feedURL);
            if (!components(item.version).empty() && isFetchable(item.url)) items.push_back(std::move(item));
        }
    }
    // Reads to the end, so that damage after the last item still counts.
    while (!reader.atEnd()) reader.readNext();
    if (reader.hasError()) return std::nullopt;
    return items;
}

int compareVersions(const QString& a, const QString& b) {
    const std::vector<qint64> left = components(a);
    const std::vector<qint64> right = components(b);
    for (std::size_t i = 0; i < std::max(left.size(), right.size()); ++i) {
        const qint64 l = i < left.size() ? left[i] : 0;
        const qint64 r = i < right.size() ? right[i] : 0;
        if (l != r) return l < r ? -1 : 1;
    }
    return 0;
}

std::optional<AppcastItem> newestNewerThan(std::span<const AppcastItem> items, const QString& current) {
    std::optional<AppcastItem> newest;
    for (const AppcastItem& item : items) {
        if (compareVersions(item.version, current) <= 0) continue;
        if (!newest || compareVersions(item.version, newest->version) > 0) newest = item;
    }
    return newest;
}

} // namespace lumabroom::Appcast
