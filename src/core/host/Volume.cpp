#include "host/Volume.h"

#include <QFile>
#include <QStorageInfo>

namespace lumabroom::Volume {

std::optional<Reading> read(const std::string& path) {
    const QStorageInfo info(QFile::decodeName(path.c_str()));
    if (!info.isValid() || !info.isReady()) return std::nullopt;
    Reading reading;
    // On Linux the name is the file system's label, which most volumes lack.
    if (const QString name = info.name(); !name.isEmpty()) reading.name = name.toStdString();
    if (const qint64 total = info.bytesTotal(); total >= 0) reading.total = total;
    if (const qint64 available = info.bytesAvailable(); available >= 0) reading.available = available;
    return reading;
}

} // namespace lumabroom::Volume
