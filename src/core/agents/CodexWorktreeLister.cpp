#include "agents/CodexWorktreeLister.h"

#include "agents/Git.h"
#include "host/Paths.h"

#include <system_error>

namespace fs = std::filesystem;

namespace lumabroom::CodexWorktreeLister {

fs::path home() { return Paths::expandingTilde("~/.codex/worktrees"); }

bool remove(const WorktreeInfo& worktree, bool force) {
    std::vector<std::string> arguments{"-C", worktree.parentRepo.string(), "worktree", "remove"};
    if (force) arguments.emplace_back("--force");
    arguments.push_back(worktree.path.string());
    if (!Git::run(arguments)) return false;
    // Not even a dangling link may be left.
    std::error_code ec;
    return fs::symlink_status(worktree.path, ec).type() == fs::file_type::not_found;
}

} // namespace lumabroom::CodexWorktreeLister
