#pragma once

#include "agents/WorktreeInfo.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Finds the git worktrees that coding agents left behind: repositories come from the working
// folders the agents recorded, each is asked for its worktrees, and the Codex worktree folder adds
// what no seed led to. A main repository is never listed, only the worktrees derived from it.
namespace lumabroom::WorktreeDiscovery {

struct Candidate {
    std::string path;
    std::string parent;
    bool operator==(const Candidate&) const = default;
};

using UpdateCallback = std::function<void(const std::vector<WorktreeInfo>&)>;

// Blocks until every worktree is measured. Calls `onUpdate` n + 1 times for n worktrees, each time
// with all of them in display order: first once all git facts are known and no size is, then once
// per measured worktree. With none found it is called once, with the empty list. Calls never
// overlap but may come from a worker thread, and must return quickly.
void discover(const UpdateCallback& onUpdate);

// Working folders from the Codex state database, through sqlite3 (10-second limit).
std::vector<std::string> codexSessionSeeds();

// Seeds worth asking git about: absolute, not "/" or the home folder, not in temporary folders or
// the agents' and the system's own places (plain string prefixes), first occurrence only, and an
// existing folder.
std::vector<std::filesystem::path> filteredSeeds(const std::vector<std::string>& seeds, const std::string& home);

// The working folder of the main repository that `folder` belongs to; nothing for a folder outside
// a repository, a bare repository or one whose git directory is kept elsewhere.
std::optional<std::filesystem::path> mainRepo(const std::filesystem::path& folder);

// Worktree paths of `git worktree list --porcelain`, untrimmed, without the main worktree.
std::vector<std::string> parseWorktreeList(std::string_view text);

// Measured worktrees first, largest first; then the unmeasured ones. Stable.
std::vector<WorktreeInfo> sortedForDisplay(std::vector<WorktreeInfo> worktrees);

struct StatusSummary {
    std::optional<std::string> branch;
    int dirtyFiles = 0;
    bool operator==(const StatusSummary&) const = default;
};

// Branch and dirty-file count of `git status --porcelain=v2 --branch` output.
StatusSummary parseStatusV2(std::string_view text);

// Branch, dirty files and orphan commits of one worktree; what git can't tell counts as none.
WorktreeState collectState(const std::filesystem::path& worktree);

} // namespace lumabroom::WorktreeDiscovery
