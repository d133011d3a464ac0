#include "host/TrashPlatform.h"

#include "host/DirectoryReader.h"

#include <QByteArray>
#include <QFile>
#include <QString>

#include <cerrno>
#include <cstdio>

namespace lumabroom::Trash {

Outcome moveItem(const std::string& item, const std::optional<FileIdentity>&) {
    const QByteArray encoded(item.data(), static_cast<qsizetype>(item.size()));
    const QString name = QFile::decodeName(encoded);
    // A name that does not survive the round trip through QString would trash another path.
    if (QFile::encodeName(name) != encoded) return {describe(item, EILSEQ), std::nullopt};
    QFile file(name);
    if (!file.moveToTrash()) return {item + ": " + file.errorString().toStdString(), std::nullopt};
    // The file now names the place the system chose in its Trash.
    const std::string location = QFile::encodeName(file.fileName()).toStdString();
    const auto identity = identityOf(location);
    if (!identity) return {}; // moved, but where cannot be told: it stays for the user to find
    return {std::nullopt, TrashedItem{item, location, {}, *identity}};
}

int moveWithoutReplacing(const std::string& from, const std::string& to) {
    return ::renamex_np(from.c_str(), to.c_str(), RENAME_EXCL) == 0 ? 0 : errno;
}

} // namespace lumabroom::Trash
