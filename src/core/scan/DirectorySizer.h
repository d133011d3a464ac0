#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace lumabroom {

struct DirectoryStats {
    // Allocated bytes (blocks × 512) of the counted files.
    std::int64_t bytes = 0;
    // Newest modification time of the root's regular files, to whole seconds; none if no time after 1970.
    std::optional<std::chrono::sys_seconds> newestModification;
    // False where part of the tree could not be walked (no descriptor left, a folder moved while it
    // was walked): the numbers are then too small. Unreadable folders do not count as missing.
    bool complete = true;
    bool operator==(const DirectoryStats&) const = default;
};

namespace DirectorySizer {

using RootCallback = std::function<void(std::size_t rootIndex, const DirectoryStats&)>;

// Measures many roots at once. A root that is a link is measured at its target; inside a tree no
// link is followed and none counts, and no mount (bind mounts too) is entered: each root is measured
// on its own file system. Every hard link counts each time it is met, unless
// `exclusiveOnly`, where a file with two or more links counts 0 bytes (its time still counts).
// Directories themselves count nothing. Unreadable parts count nothing and stop nothing.
// `onRootComplete` is called exactly once per root, never two calls at a time, possibly on a worker
// thread; it must return quickly. A cancelled walk stops and keeps its partial sums.
std::vector<DirectoryStats> stats(std::span<const std::filesystem::path> roots, bool exclusiveOnly,
                                  const RootCallback& onRootComplete = {});
std::vector<std::int64_t> sizes(std::span<const std::filesystem::path> roots, bool exclusiveOnly);
std::int64_t size(const std::filesystem::path& root, bool exclusiveOnly);

} // namespace DirectorySizer
} // namespace lumabroom
