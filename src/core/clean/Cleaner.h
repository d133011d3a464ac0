#pragma once

#include "host/Trash.h"
#include "scan/ScanEntry.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lumabroom {

enum class CleanMethod {
    trash,   // to the user's Trash, from where it can be restored; space returns when it is emptied
    delete_, // at once (`delete` is a keyword)
};

std::string_view rawValue(CleanMethod);
std::optional<CleanMethod> cleanMethodFromRaw(std::string_view);

struct CleanResult {
    struct Failure {
        std::filesystem::path url;
        std::string message; // the platform's description of the error, naming what failed
        bool operator==(const Failure&) const = default;
    };

    std::vector<std::filesystem::path> removed; // in the order of the entries
    std::vector<Failure> failures;              // one per entry not removed, in the order of the entries
    std::int64_t freedBytes = 0;                // the sizes the scan measured, of the removed entries;
                                                // a link counts its own blocks, not its target's
    // A removed entry of a clean to the Trash (no dry run), where it went, for Trash::restore.
    struct Trashed {
        std::filesystem::path url;
        std::int64_t freedBytes = 0; // what it added to freedBytes
        Trash::TrashedItem item;
        bool operator==(const Trashed&) const = default;
    };
    std::vector<Trashed> trashed; // in the order of the entries; on macOS, those the system told of

    bool operator==(const CleanResult&) const = default;
};

namespace Cleaner {

// Removes the entries one after the other on the calling thread and reports each. A failure does not
// stop the others; a folder that fails half way keeps what was already deleted, and counts no bytes.
// A dry run touches nothing and reports every entry as removed. Deleting never follows a symbolic
// link and never leaves the entry's own tree or file system; an entry that is a link removes the link
// only. An entry whose identity was recorded and whose path now leads to another item fails.
CleanResult clean(std::span<const ScanEntry> entries, CleanMethod method, bool dryRun);

} // namespace Cleaner
} // namespace lumabroom
