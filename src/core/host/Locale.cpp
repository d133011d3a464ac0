#include "host/Locale.h"

#include <QDirIterator>
#include <QLocale>
#include <QString>
#include <QTranslator>

#include <algorithm>
#include <limits>
#include <map>
#include <memory>

namespace lumabroom::Locale {

namespace {
QString qString(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

// Every compiled table embedded below ":/i18n", by the language its file declares. Loaded once
// and never changed after, so lookups from any thread only read.
using Tables = std::multimap<std::string, std::unique_ptr<QTranslator>, std::less<>>;

const Tables& tables() {
    static const Tables loaded = [] {
        Tables found;
        QDirIterator files(QStringLiteral(":/i18n"), {QStringLiteral("*.qm")}, QDir::Files);
        while (files.hasNext()) {
            auto table = std::make_unique<QTranslator>();
            if (!table->load(files.next())) continue;
            std::string language = table->language().toStdString();
            found.emplace(std::move(language), std::move(table));
        }
        return found;
    }();
    return loaded;
}
} // namespace

std::vector<std::string> preferredLanguages() {
    std::vector<std::string> names;
    for (const QString& name : QLocale::system().uiLanguages()) names.push_back(name.toStdString());
    return names;
}

std::string languageCode(std::string_view localeName) {
    return QLocale::languageToCode(QLocale(qString(localeName)).language()).toStdString();
}

std::string dataSize(std::int64_t bytes, int decimals, std::string_view localeName) {
    return QLocale(qString(localeName)).formattedDataSize(bytes, decimals, QLocale::DataSizeSIFormat).toStdString();
}

std::optional<std::string> translation(std::string_view language, std::string_view context, std::string_view key,
                                       std::optional<std::int64_t> count) {
    const std::string contextText(context);
    const std::string keyText(key);
    constexpr std::int64_t largest = std::numeric_limits<int>::max();
    const int n = count ? static_cast<int>(std::clamp<std::int64_t>(*count, -largest, largest)) : -1;
    const auto [first, last] = tables().equal_range(language);
    for (auto it = first; it != last; ++it) {
        const QString text = it->second->translate(contextText.c_str(), keyText.c_str(), nullptr, n);
        if (!text.isEmpty()) return text.toStdString();
    }
    return std::nullopt;
}

} // namespace lumabroom::Locale
