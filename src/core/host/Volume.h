#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace lumabroom::Volume {

// What the system says of a volume; a value it does not give is absent.
struct Reading {
    // The volume's name; on Linux its label, else its mount point.
    std::optional<std::string> name;
    std::optional<std::int64_t> total;
    std::optional<std::int64_t> available; // bytes this user may still write
    bool operator==(const Reading&) const = default;
};

// The volume that holds `path`; nothing if the path's volume cannot be read.
std::optional<Reading> read(const std::string& path);

} // namespace lumabroom::Volume
