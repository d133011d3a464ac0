#include "host/Volume.h"

#include "host/Paths.h"
#include "host/Platform.h"

#include <QFile>
#include <QStorageInfo>

#include <sys/stat.h>
#include <sys/statvfs.h>

namespace lumabroom::Volume {

namespace {
// The highest folder above `path` on the same volume.
std::optional<std::string> mountPoint(const std::string& path) {
    struct stat item {};
    if (::stat(path.c_str(), &item) != 0) return std::nullopt;
    std::string top = path;
    while (top != "/") {
        const std::string up = Paths::deletingLastPathComponent(top);
        struct stat above {};
        if (up.empty() || ::stat(up.c_str(), &above) != 0 || above.st_dev != item.st_dev) break;
        top = up;
    }
    return top;
}
} // namespace

std::optional<Reading> read(const std::string& path) {
    Reading reading;
    const QStorageInfo info(QFile::decodeName(path.c_str()));
    if (info.isValid() && info.isReady()) {
        // On Linux the name is the file system's label, which most volumes lack; the mount point
        // still tells one volume from another there.
        if (const QString name = info.name(); !name.isEmpty()) reading.name = name.toStdString();
        else if (!Platform::isMacOS()) reading.name = QFile::encodeName(info.rootPath()).toStdString();
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
    if (!Platform::isMacOS()) reading.name = mountPoint(path);
    return reading;
}

} // namespace lumabroom::Volume
