#include "host/Settings.h"

#include <QFile>
#include <QSettings>
#include <QString>
#include <QVariant>

#include <atomic>

namespace lumabroom::Settings {

namespace {
// Where the native format is no file (the user defaults of macOS), a redirected store is an ini file.
std::atomic<bool> redirectedToIni{false};

QString qString(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

template <typename Body>
auto withStore(Body body) {
    if (redirectedToIni.load()) {
        QSettings store(QSettings::IniFormat, QSettings::UserScope, "Lumabroom", "Lumabroom");
        return body(store);
    }
    QSettings store("Lumabroom", "Lumabroom");
    return body(store);
}
} // namespace

std::optional<std::string> string(std::string_view key) {
    return withStore([&](QSettings& store) -> std::optional<std::string> {
        const QVariant value = store.value(qString(key));
        if (value.typeId() != QMetaType::QString) return std::nullopt;
        return value.toString().toStdString();
    });
}

bool setString(std::string_view key, std::string_view value) {
    return withStore([&](QSettings& store) {
        store.setValue(qString(key), qString(value));
        store.sync();
        return store.status() == QSettings::NoError;
    });
}

bool remove(std::string_view key) {
    return withStore([&](QSettings& store) {
        store.remove(qString(key));
        store.sync();
        return store.status() == QSettings::NoError;
    });
}

void useFolder(const std::filesystem::path& folder) {
    const QString path = QFile::decodeName(folder.c_str());
#if defined(__APPLE__)
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, path);
    redirectedToIni.store(true);
#else
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path);
#endif
}

} // namespace lumabroom::Settings
