#include "host/Volume.h"

#include <QFile>
#include <QStorageInfo>

#include <sys/statvfs.h>

namespace lumabroom::Volume {

std::optional<Reading> read(const std::string& path) {
    Reading reading;
    const QStorageInfo info(QFile::decodeName(path.c_str()));
    if (info.isValid() && info.isReady()) {
        // On Linux the name is the file system's label, which most volumes lack.
        if (const QString name = info.name(); !name.isEmpty()) reading.name = name.toStdString();
        if (const qint64 total = info.bytesTotal(); total >= 0) reading.total = total;
        if (const qint64 available = info.bytesAvailable(); available >= 0) reading.available = available;
        return reading;
    }
    // Where the mount table does not show the volume (a chroot, a container), the file system
    // still knows its own size.
    struct statvfs fs {};
    if (::statvfs(path.c_str(), &fs) != 0) return std::nullopt;
    reading.total = static_cast<std::int64_t>(fs.f_blocks) * static_cast<std::int64_t>(fs.f_frsize);
    reading.available = static_cast<std::int64_t>(fs.f_bavail) * static_cast<std::int64_t>(fs.f_frsize);
    return reading;
}

} // namespace lumabroom::Volume
