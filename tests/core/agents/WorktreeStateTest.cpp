#include "agents/CodexWorktreeLister.h"
#include "agents/WorktreeDiscovery.h"

#include "GitRepo.h"
#include "host/ToolPaths.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

TEST(WorktreeState, SortedForDisplayPutsMeasuredFirstLargestFirstStably) {
    const std::optional<std::int64_t> sizes[] = {std::nullopt, 5, 1, std::nullopt, 5, 0};
    std::vector<WorktreeInfo> list(std::size(sizes));
    for (std::size_t i = 0; i < list.size(); ++i) {
        list[i].path = std::to_string(i);
        list[i].size = sizes[i];
    }
    std::string order;
    for (const auto& w : WorktreeDiscovery::sortedForDisplay(list)) order += w.path.string();
    EXPECT_EQ(order, "142503");
}

TEST(WorktreeState, FilteredSeedsUseStringPrefixesAndKeepFirstOccurrences) {
    AgentHome h;
    const std::string home = h.home.string(), repo = h.tree->dir("home/src/repo").string();
    for (const char* file : {"Library/x/f", "Library2/f", ".codex/worktrees/a/f", "Documents/Codex/p/f", "file.txt"})
        h.write(file, "");
    // "Library2" goes too: the prefixes are plain strings.
    const std::vector<std::string> seeds{repo,
                                         "/",
                                         home,
                                         "/tmp",
                                         home + "/.codex/worktrees/a",
                                         home + "/Library/x",
                                         home + "/Documents/Codex/p",
                                         home + "/file.txt",
                                         repo,
                                         home + "/Library2"};
    EXPECT_EQ(WorktreeDiscovery::filteredSeeds(seeds, home), std::vector<fs::path>{repo});
}

TEST(WorktreeState, RealRepositoriesInKnownStates) {
    TempTree t;
    const fs::path repo = t / "repo";
    makeRepo(repo);

    // A branch ahead of its upstream: unpushed, yet the branch keeps its commits. Its status carries
    // upstream header lines, which are no dirty files.
    const fs::path feature = t / "wt/feature";
    git(repo, {"worktree", "add", "-q", "--track", "-b", "feature", feature.string(), "main"});
    for (const char* file : {"f1", "f2", "f3", "f4"}) commitFile(feature, file, "x");

    // Dirty files of every kind, one line each, on a branch in the middle of a merge.
    const fs::path dirty = t / "wt/dirty one";
    for (const char* file : {"tracked.txt", "gone.txt", "old-name.txt", "both.txt"}) commitFile(repo, file, "a\n");
    git(repo, {"worktree", "add", "-q", "-b", "dirty", dirty.string()});
    commitFile(repo, "conflict.txt", "main side\n");
    commitFile(dirty, "conflict.txt", "dirty side\n");
    git(dirty, {"merge", "-q", "main"}, /*mayFail=*/true); // u UU
    writeText(dirty / "tracked.txt", "changed\n");         // 1 .M
    writeText(dirty / "both.txt", "staged\n");
    writeText(dirty / "added.txt", "new\n");
    git(dirty, {"add", "both.txt", "added.txt"});         // 1 A.
    writeText(dirty / "both.txt", "and changed again\n"); // 1 MM, still one line
    fs::remove(dirty / "gone.txt");                       // 1 .D
    git(dirty, {"mv", "old-name.txt", "new-name.txt"});   // 2 R.
    writeText(dirty / "untracked.txt", "u\n");            // ?
    writeText(dirty / "ballast.bin", "ignored files are not counted\n");

    // Detached past main: one commit that a remote-tracking ref holds, one that only a tag holds; and
    // detached on a commit of a branch.
    const fs::path past = t / "wt/past main", onBranch = t / "wt/on-branch";
    git(repo, {"worktree", "add", "-q", "--detach", past.string(), "main"});
    commitFile(past, "p1", "1");
    git(past, {"update-ref", "refs/remotes/origin/pushed", "HEAD"});
    commitFile(past, "p2", "2");
    git(past, {"tag", "on-orphan"});
    git(repo, {"worktree", "add", "-q", "--detach", onBranch.string(), "feature~2"});

    // A repository without commits, and a worktree whose repository is gone.
    const fs::path empty = t / "empty", doomed = t / "doomed", left = t / "wt/left";
    makeRepo(empty, /*empty=*/true);
    makeRepo(doomed);
    git(doomed, {"worktree", "add", "-q", "-b", "b", left.string()});
    fs::remove_all(doomed);

    const std::pair<fs::path, WorktreeState> cases[] = {
        {feature, {"feature", 0, 0}},           {dirty, {"dirty", 7, 0}}, {past, {std::nullopt, 0, 1}},
        {onBranch, {std::nullopt, 0, 0}},       {empty, {"main", 0, 0}},  {left, {std::nullopt, 0, 0}},
        {t.dir("plain"), {std::nullopt, 0, 0}},
    };
    for (const auto& [path, expected] : cases) EXPECT_EQ(WorktreeDiscovery::collectState(path), expected) << path;

    // Git refuses the dirty worktree without force and leaves it; with force it goes.
    WorktreeInfo info;
    info.path = dirty;
    info.parentRepo = repo;
    EXPECT_FALSE(CodexWorktreeLister::remove(info, false));
    EXPECT_TRUE(fs::exists(dirty / "untracked.txt"));
    EXPECT_TRUE(CodexWorktreeLister::remove(info, true));
    // Without its repository git can't remove a worktree, and nothing else does.
    info.path = left;
    info.parentRepo = doomed;
    EXPECT_FALSE(CodexWorktreeLister::remove(info, true));
    EXPECT_TRUE(fs::exists(left / "README"));

    // A git that records its arguments and claims success is not believed while the folder is there.
    writeText(t / "git", "#!/bin/sh\nprintf '%s\\n' \"$*\" >> '" + (t / "git-args").string() + "'\n");
    fs::permissions(t / "git", fs::perms::owner_all);
    ToolPaths::setOverride(Tool::git, (t / "git").string());
    EXPECT_FALSE(CodexWorktreeLister::remove(info, false));
    EXPECT_FALSE(CodexWorktreeLister::remove(info, true));
    ToolPaths::setOverride(Tool::git, std::nullopt);
    std::ostringstream args;
    args << std::ifstream(t / "git-args").rdbuf();
    const std::string prefix = "-C " + doomed.string() + " worktree remove ";
    EXPECT_EQ(args.str(), prefix + left.string() + "\n" + prefix + "--force " + left.string() + "\n");
}
