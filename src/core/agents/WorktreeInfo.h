#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace lumabroom {

// One git worktree with what deleting it would lose.
struct WorktreeInfo {
    std::filesystem::path path;
    std::string repoName;              // last component of `path`, not of the main repository
    std::filesystem::path parentRepo;  // the main repository's working folder
    std::optional<std::string> branch; // none on a detached HEAD or when git gave no answer
    std::optional<std::int64_t> size;  // allocated bytes, once the size pass has reached it
    std::optional<std::chrono::sys_seconds> lastModified;
    int dirtyFiles = 0;    // changed, renamed, conflicted and untracked paths
    int orphanCommits = 0; // commits that only this worktree's HEAD reaches
    bool hasRemote = false;

    std::string id() const { return path.string(); }
    // Unpushed commits on a branch are no risk: the branch survives the removal.
    bool isRisky() const { return dirtyFiles > 0 || orphanCommits > 0; }
    bool operator==(const WorktreeInfo&) const = default;
};

// What git says about one worktree.
struct WorktreeState {
    std::optional<std::string> branch;
    int dirtyFiles = 0;
    int orphanCommits = 0;
    bool operator==(const WorktreeState&) const = default;
};

} // namespace lumabroom
