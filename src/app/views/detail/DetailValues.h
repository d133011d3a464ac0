#pragma once

#include "agents/WorktreeInfo.h"
#include "scan/CleanRule.h"
#include "scan/RuleScanResult.h"
#include "scan/ScanEntry.h"
#include "tools/DockerPruner.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// What the detail panel derives from a rule's result and the model's lists: pure, so that the
// widgets only lay it out.
namespace lumabroom::DetailValues {

inline constexpr std::size_t kFoldAt = 16; // lists this long show only their head while folded
inline constexpr std::size_t kFoldedRows = 10;
inline constexpr std::size_t kTmpFolderListLimit = 60;
inline constexpr std::int64_t kTmpFolderMinBytes = 100 * 1024 * 1024;

// Any entry stands for a kind of Docker usage rather than a file.
bool hasDockerBreakdown(const RuleScanResult& result);
// The entries the card lists: all, except the small folders of a long temporary-folder rule.
std::vector<ScanEntry> visibleEntries(const RuleScanResult& result);
// The command a note quotes in backticks, as the second non-empty piece.
std::optional<std::string> embeddedCommand(std::string_view note);
// What the entry delete dialog warns of, by rule.
std::string entryDeleteMessageKey(std::string_view ruleID);
// Only these rules offer a delete on each row.
bool rowsHaveOwnDelete(std::string_view ruleID);
// "可回收 …" from the usage row of the target's kind, if it has a reclaimable amount.
std::optional<std::string> reclaimHint(const RuleScanResult& result, DockerPruneTarget target);

std::int64_t worktreeTotal(std::span<const WorktreeInfo> worktrees);
struct WorktreeGroup {
    std::string repoPath;
    std::vector<WorktreeInfo> items; // largest first, unmeasured last, ties in list order
};
// One group per main repository, the largest total first.
std::vector<WorktreeGroup> worktreeGroups(std::span<const WorktreeInfo> worktrees);
// The largest measured size, 0 when none is measured.
std::int64_t largestWorktree(std::span<const WorktreeInfo> worktrees);
// What removing the worktree would lose, in the current language.
std::string worktreeDeleteWarning(const WorktreeInfo& worktree);
// `path` with the home folder written as "~".
std::string withTilde(const std::string& path);
// Share of `size` in `maxSize`, 0 when either is below 1.
double fraction(std::int64_t size, std::int64_t maxSize);

} // namespace lumabroom::DetailValues
