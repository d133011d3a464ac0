#pragma once

#include "agents/WorktreeInfo.h"

#include <filesystem>

namespace lumabroom::CodexWorktreeLister {

// "~/.codex/worktrees" with the tilde expanded.
std::filesystem::path home();

// `git worktree remove` (with "--force" only when `force`), never a deletion by other means.
// True only when git succeeded and nothing at all is left at the worktree's path.
bool remove(const WorktreeInfo& worktree, bool force);

} // namespace lumabroom::CodexWorktreeLister
