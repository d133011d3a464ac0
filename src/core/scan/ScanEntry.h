#pragma once

#include "host/FolderChain.h"
#include "scan/EntryLabel.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace lumabroom {

struct ScanEntry {
    std::filesystem::path url;
    std::int64_t size = 0;
    std::optional<EntryLabel> label;
    // The item itself (a link, not its target) as the scan found it, where the scan looked; removal
    // refuses an item that no longer matches. Not part of what an entry shows, so not compared.
    std::optional<FileIdentity> identity = std::nullopt;

    std::string id() const { return url.string(); }
    bool operator==(const ScanEntry& other) const {
        return url == other.url && size == other.size && label == other.label;
    }
};

} // namespace lumabroom

template <>
struct std::hash<lumabroom::ScanEntry> {
    std::size_t operator()(const lumabroom::ScanEntry&) const noexcept;
};
