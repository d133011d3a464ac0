#include "host/TrashPlatform.h"

#include <QByteArray>
#include <QFile>
#include <QString>

#include <cerrno>

namespace lumabroom::Trash {

std::optional<std::string> moveItem(const std::string& item, const std::optional<FileIdentity>&) {
    const QByteArray encoded(item.data(), static_cast<qsizetype>(item.size()));
    const QString name = QFile::decodeName(encoded);
    // A name that does not survive the round trip through QString would trash another path.
    if (QFile::encodeName(name) != encoded) return describe(item, EILSEQ);
    QFile file(name);
    if (file.moveToTrash()) return std::nullopt;
    return item + ": " + file.errorString().toStdString();
}

} // namespace lumabroom::Trash
