#include "scan/DirectorySizer.h"

#include "concurrency/Cancellation.h"
#include "concurrency/ParallelMap.h"
#include "concurrency/WorkerPool.h"
#include "host/DirectoryReader.h"
#include "host/Platform.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace lumabroom::DirectorySizer {

namespace {

struct Shard {
    std::size_t root = 0;
    std::string path;
};

// Deep trees are walked with this many descriptors at most.
constexpr std::size_t kOpenFolderBudget = 96;

struct Sums {
    std::int64_t bytes = 0;
    std::int64_t newest = 0;
    bool complete = true;

    void add(const Sums& other) {
        bytes += other.bytes;
        newest = std::max(newest, other.newest);
        complete = complete && other.complete;
    }

    void count(const FileInfo& file, bool exclusiveOnly) {
        if (!(exclusiveOnly && file.linkCount >= 2)) bytes += file.allocatedBytes;
        if (file.modificationSeconds > newest) newest = file.modificationSeconds;
    }
};

DirectoryStats makeStats(const Sums& sums) {
    DirectoryStats s{sums.bytes, std::nullopt, sums.complete};
    if (sums.newest >= 1) s.newestModification = std::chrono::sys_seconds(std::chrono::seconds(sums.newest));
    return s;
}

// One level down: each shard's subfolders become shards, its files are counted on the way.
// Nothing if not one folder could be read.
std::optional<std::vector<Shard>> deepen(const std::vector<Shard>& shards, std::vector<Sums>& sums,
                                         bool exclusiveOnly) {
    if (shards.empty()) return std::nullopt;
    std::vector<Shard> next;
    bool readAny = false;
    for (const auto& shard : shards) {
        DirectoryReader reader(shard.path);
        if (!reader.isOpen()) {
            next.push_back(shard);
            continue;
        }
        readAny = true;
        reader.forEach([&](const DirectoryReader::Entry& entry) {
            if (entry.isDirectory) {
                // A mount below is another file system's; the walk would only see its path.
                if (reader.isMountPointBelow(entry.name)) return true;
                std::string path = shard.path;
                if (path.back() != '/') path.push_back('/');
                path.append(entry.name);
                next.push_back({shard.root, std::move(path)});
            } else if (auto info = entry.regularFile()) {
                sums[shard.root].count(*info, exclusiveOnly);
            }
            return true;
        });
    }
    if (!readAny) return std::nullopt;
    return next;
}

// Walks one folder whole, depth first, by descriptors relative to their parent, so no path is ever
// rebuilt per file. Each level keeps its subfolder names until it has been left.
Sums walk(const std::string& path, bool exclusiveOnly) {
    Sums sums;
    FolderChain chain(path, kOpenFolderBudget);
    if (chain.fd(0) < 0) return sums;
    struct Level {
        std::string subfolders; // names, each ended by NUL
        std::size_t position = 0;
    };
    std::vector<Level> levels(1);

    auto read = [&](Level& level) {
        level.subfolders.clear();
        level.position = 0;
        return DirectoryReader::borrowing(chain.fd()).forEach([&](const DirectoryReader::Entry& entry) {
            if (Cancellation::isCancelled()) return false;
            if (entry.isDirectory) {
                level.subfolders.append(entry.name);
                level.subfolders.push_back('\0');
            } else if (auto info = entry.regularFile()) {
                sums.count(*info, exclusiveOnly);
            }
            return true;
        });
    };

    if (!read(levels[0])) return sums;
    for (;;) {
        const std::size_t depth = chain.depth();
        Level& level = levels[depth];
        if (level.position >= level.subfolders.size()) {
            if (depth == 0) break;
            chain.ascend();
            continue;
        }
        const char* name = level.subfolders.data() + level.position;
        level.position += std::strlen(name) + 1;
        const auto descent = chain.descend(name);
        if (descent == FolderChain::Descent::lost) {
            sums.complete = false;
            level.position = level.subfolders.size();
        }
        if (descent != FolderChain::Descent::entered) continue;
        if (levels.size() == depth + 1) levels.emplace_back();
        if (!read(levels[depth + 1])) break;
    }
    return sums;
}

} // namespace

std::vector<DirectoryStats> stats(std::span<const std::filesystem::path> roots, bool exclusiveOnly,
                                  const RootCallback& onRootComplete) {
    Platform::raiseOpenFileLimit();
    std::vector<Sums> sums(roots.size());
    std::vector<Shard> shards;

    for (std::size_t i = 0; i < roots.size(); ++i) {
        const std::string path = roots[i].string();
        auto info = statFollowingLinks(path);
        if (!info) continue;
        if (info->isDirectory) {
            if (auto resolved = resolvedPath(path)) shards.push_back({i, std::move(*resolved)});
        } else {
            sums[i].count(*info, exclusiveOnly);
        }
    }

    const std::size_t width = static_cast<std::size_t>(Platform::processorCount()) * 4;
    for (int pass = 0; pass < 4 && shards.size() < width; ++pass) {
        auto deeper = deepen(shards, sums, exclusiveOnly);
        if (!deeper) break;
        shards = std::move(*deeper);
    }

    std::vector<std::size_t> remaining(roots.size(), 0);
    for (const auto& shard : shards) ++remaining[shard.root];

    auto walkShard = [exclusiveOnly](const Shard& shard) { return walk(shard.path, exclusiveOnly); };

    if (onRootComplete) {
        for (std::size_t i = 0; i < roots.size(); ++i)
            if (remaining[i] == 0) onRootComplete(i, makeStats(sums[i]));
        ParallelMap::run(shards, walkShard, [&](std::size_t index, const Sums& shardSums) {
            std::size_t root = shards[index].root;
            sums[root].add(shardSums);
            if (--remaining[root] == 0) onRootComplete(root, makeStats(sums[root]));
        });
    } else {
        auto results = ParallelMap::run(shards, walkShard);
        for (std::size_t index = 0; index < results.size(); ++index) {
            sums[shards[index].root].add(results[index]);
        }
    }

    std::vector<DirectoryStats> result;
    result.reserve(roots.size());
    for (const auto& s : sums) result.push_back(makeStats(s));
    return result;
}

std::vector<std::int64_t> sizes(std::span<const std::filesystem::path> roots, bool exclusiveOnly) {
    std::vector<std::int64_t> result;
    for (const auto& s : stats(roots, exclusiveOnly)) result.push_back(s.bytes);
    return result;
}

std::int64_t size(const std::filesystem::path& root, bool exclusiveOnly) {
    return sizes(std::span(&root, 1), exclusiveOnly).front();
}

} // namespace lumabroom::DirectorySizer
