#include "text/DiskSpace.h"

#include "text/Localization.h"

#include <algorithm>

namespace lumabroom {

std::optional<DiskSpace> DiskSpace::current(const std::filesystem::path& path) {
    const auto reading = Volume::read(path.string());
    return reading ? from(*reading) : std::nullopt;
}

std::optional<DiskSpace> DiskSpace::from(const Volume::Reading& reading) {
    if (!reading.total || *reading.total < 1 || !reading.available) return std::nullopt;
    return DiskSpace{
        .volumeName = reading.name ? *reading.name : Localization::text("启动磁盘"),
        .total = *reading.total,
        .available = std::clamp<std::int64_t>(*reading.available, 0, *reading.total),
    };
}

} // namespace lumabroom
