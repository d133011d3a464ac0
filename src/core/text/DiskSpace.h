#pragma once

#include "host/Volume.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace lumabroom {

// The capacity of one volume, for the disk bars.
struct DiskSpace {
    std::string volumeName;
    std::int64_t total = 0;     // above 0
    std::int64_t available = 0; // never above total

    std::int64_t used() const { return total > available ? total - available : 0; }
    bool operator==(const DiskSpace&) const = default;

    // The volume that holds `path`; nothing if it cannot be read.
    static std::optional<DiskSpace> current(const std::filesystem::path& path);
    // Nothing without a total above 0 or without the available bytes. A volume without a name is
    // the localized "启动磁盘" (startup disk); more available than total is the total.
    static std::optional<DiskSpace> from(const Volume::Reading& reading);
};

} // namespace lumabroom
