#include "ModelWork.h"

#include "agents/CodexWorktreeLister.h"
#include "scan/BuiltinRules.h"

namespace lumabroom {

void AppModel::loadWorktrees(bool force) { discoverWorktrees(force, {}); }

void AppModel::discoverWorktrees(bool force, std::function<void()> ended) {
    assertOnOwnThread();
    if ((!force && worktrees_) || isLoadingWorktrees_) {
        if (ended) ended();
        return;
    }
    assign(isLoadingWorktrees_, true, &AppModel::isLoadingWorktreesChanged);
    workPool().submit([this, inbox = inbox_, discover = services_.discoverWorktrees, ended = std::move(ended)] {
        discover([&](const std::vector<WorktreeInfo>& list) {
            inbox->post([this, list] {
                assignAndNotify(worktrees_, OptionalWorktrees(list), &AppModel::worktreesChanged);
                applyWorktreeEntries();
            });
        });
        inbox->post([this, ended] {
            assign(isLoadingWorktrees_, false, &AppModel::isLoadingWorktreesChanged);
            if (ended) ended();
        });
    });
}

void AppModel::applyWorktreeEntries() {
    assertOnOwnThread();
    if (!worktrees_) return;
    const CleanRule* rule = BuiltinRules::find(kWorktreeRule);
    if (!rule) return;
    RuleScanResult result{*rule, {}};
    for (const WorktreeInfo& worktree : *worktrees_)
        result.entries.push_back({worktree.path, worktree.size.value_or(0), {}});
    apply(std::move(result));
}

void AppModel::removeWorktree(const WorktreeInfo& worktree) {
    assertOnOwnThread();
    if (removingWorktreeID_) return;
    assign(removingWorktreeID_, OptionalText(worktree.id()), &AppModel::removingWorktreeIDChanged);
    offMainThread([worktree] { return CodexWorktreeLister::remove(worktree, worktree.isRisky()); },
                  [this, worktree](bool removed) {
                      assign(removingWorktreeID_, OptionalText(), &AppModel::removingWorktreeIDChanged);
                      if (!removed) {
                          setSummary({ActionSummary::WorktreeRemoveFailed{worktree.repoName}});
                          loadWorktrees(true);
                          return;
                      }
                      setSummary({ActionSummary::WorktreeRemoved{worktree.repoName, worktree.size.value_or(0)}});
                      if (worktrees_) {
                          std::vector<WorktreeInfo> kept;
                          for (const WorktreeInfo& other : *worktrees_)
                              if (other.path.native() != worktree.path.native()) kept.push_back(other);
                          assignAndNotify(worktrees_, OptionalWorktrees(std::move(kept)), &AppModel::worktreesChanged);
                      }
                      applyWorktreeEntries();
                  });
}

} // namespace lumabroom
