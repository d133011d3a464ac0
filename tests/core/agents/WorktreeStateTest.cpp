#include "agents/CodexWorktreeLister.h"
#include "agents/Git.h"
#include "agents/WorktreeDiscovery.h"

#include "GitRepo.h"
#include "host/ToolPaths.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sys/stat.h>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {

// Points git at a program of the test for the life of the object.
struct GitOverride {
    explicit GitOverride(std::string path) { ToolPaths::setOverride(Tool::git, std::move(path)); }
    ~GitOverride() { ToolPaths::setOverride(Tool::git, std::nullopt); }
};

std::string readAll(const fs::path& file) {
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

} // namespace

// The kinds of dirty files come from real repositories below; here the edges of the format.
TEST(WorktreeState, ParseStatusV2CountsNonHeaderLinesAndReadsTheHead) {
    const std::pair<std::string, WorktreeDiscovery::StatusSummary> cases[] = {
        {"# branch.oid 1a2b\n# branch.head (detached)\n", {std::nullopt, 0}},
        {"# branch.head detached\n# branch.upstream origin/x\n# branch.ab +1 -0\n# stash 2\n", {"detached", 0}},
        {"# branch.head one\n# branch.head two\n", {"two", 0}},
        {"\n1 .M N... 100644 100644 100644 aa bb f.txt\n\n? x\n\n", {std::nullopt, 2}},
        {"", {std::nullopt, 0}},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(WorktreeDiscovery::parseStatusV2(text), expected) << text;
}

TEST(WorktreeState, ParseWorktreeListKeepsPathsWholeAndDropsTheMainOne) {
    EXPECT_EQ(WorktreeDiscovery::parseWorktreeList("worktree /r\nHEAD 1a2b\nbranch refs/heads/main\n\n"
                                                   "worktree /w/with  two blanks \nHEAD 3c4d\ndetached\n\n"
                                                   "worktree /w/locked\nHEAD 5e6f\nlocked reason\nprunable gone\n\n"),
              (std::vector<std::string>{"/w/with  two blanks ", "/w/locked"}));
}

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
    const std::string other = h.tree->dir("other").string();
    for (const char* file : {"Library/x/f", "Library2/f", ".codex/worktrees/a/f", "Documents/Codex/p/f", "file.txt"})
        h.write(file, "");
    // "Library2" goes too: the prefixes are plain strings.
    const std::vector<std::string> seeds{
        repo, "relative/path", "/", home, "/tmp", "/tmpdata/repo", "/private/tmp/x", "/var/folders/ab/x",
        "/private/var/folders/x", home + "/.codex/worktrees/a", home + "/Library/x", home + "/Documents/Codex/p",
        home + "/file.txt", home + "/missing", other, repo, home + "/Library2"};
    EXPECT_EQ(WorktreeDiscovery::filteredSeeds(seeds, home), (std::vector<fs::path>{repo, other}));
}

TEST(WorktreeState, RealRepositoriesInKnownStates) {
    auto tree = treeOutsideTmp();
    auto& t = *tree;
    const fs::path repo = t / "repo", origin = t / "origin.git";
    makeRepo(repo);
    git(t.root(), {"init", "-q", "--bare", origin.string()});
    git(repo, {"remote", "add", "origin", origin.string()});
    git(repo, {"push", "-q", "origin", "main"});

    // A branch with commits that were never pushed.
    const fs::path feature = t / "wt/feature";
    git(repo, {"worktree", "add", "-q", "-b", "feature", feature.string()});
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
    git(dirty, {"add", "both.txt"});
    writeText(dirty / "both.txt", "and changed again\n"); // 1 MM, still one line
    fs::remove(dirty / "gone.txt");                       // 1 .D
    git(dirty, {"mv", "old-name.txt", "new-name.txt"});   // 2 R.
    writeText(dirty / "added.txt", "new\n");
    git(dirty, {"add", "added.txt"});          // 1 A.
    writeText(dirty / "untracked.txt", "u\n"); // ?
    writeText(dirty / "ballast.bin", "ignored files are not counted\n");

    // Detached two commits past main, and detached on a commit that a branch holds.
    const fs::path past = t / "wt/past main", onBranch = t / "wt/on-branch";
    git(repo, {"worktree", "add", "-q", "--detach", past.string(), "main"});
    commitFile(past, "p1", "1");
    commitFile(past, "p2", "2");
    git(past, {"tag", "on-orphan"}); // tags don't protect commits
    git(repo, {"worktree", "add", "-q", "--detach", onBranch.string(), "feature~2"});

    const fs::path empty = t / "empty", doomed = t / "doomed", left = t / "wt/left";
    makeRepo(empty, /*empty=*/true);
    makeRepo(doomed);
    git(doomed, {"worktree", "add", "-q", "-b", "b", left.string()});
    fs::remove_all(doomed);

    const std::pair<fs::path, WorktreeState> cases[] = {
        {feature, {"feature", 0, 0}},     {dirty, {"dirty", 7, 0}},        {past, {std::nullopt, 0, 2}},
        {onBranch, {std::nullopt, 0, 0}}, {empty, {"main", 0, 0}},         {left, {std::nullopt, 0, 0}},
        {t.dir("plain"), {std::nullopt, 0, 0}},
    };
    for (const auto& [path, expected] : cases) EXPECT_EQ(WorktreeDiscovery::collectState(path), expected) << path;

    // Git refuses the dirty worktree without force and leaves it; with force it goes, its branch stays.
    WorktreeInfo info;
    info.path = dirty;
    info.parentRepo = repo;
    EXPECT_FALSE(CodexWorktreeLister::remove(info, false));
    EXPECT_EQ(readAll(dirty / "untracked.txt"), "u\n");
    EXPECT_TRUE(CodexWorktreeLister::remove(info, true));
    EXPECT_FALSE(fs::exists(dirty));
    EXPECT_EQ(git(repo, {"branch", "--list", "dirty"}).out, "  dirty\n");
    // Without its repository git can't remove a worktree, and nothing else does.
    info.path = left;
    info.parentRepo = doomed;
    EXPECT_FALSE(CodexWorktreeLister::remove(info, true));
    EXPECT_TRUE(fs::exists(left / "README"));
}

TEST(WorktreeState, RemovalGoesThroughGitWithForceBeforeThePathAndTrustsOnlyWhatIsLeft) {
    TempTree t;
    WorktreeInfo info;
    info.path = t.dir("wt/still here");
    info.parentRepo = t / "repo";
    {
        GitOverride missing((t / "no-git-here").string());
        EXPECT_EQ(Git::binary(), std::nullopt);
        EXPECT_FALSE(CodexWorktreeLister::remove(info, true));
    }
    // A git that records its arguments, succeeds, and then does `then`.
    const auto fakeGit = [&](const std::string& then) {
        writeText(t / "git", "#!/bin/sh\nprintf '%s\\n' \"$*\" >> '" + (t / "git-args").string() + "'\n" + then + "\n");
        ::chmod((t / "git").c_str(), 0755);
        return (t / "git").string();
    };
    GitOverride fake(fakeGit(""));
    EXPECT_FALSE(CodexWorktreeLister::remove(info, false)) << "the folder is still there";
    EXPECT_FALSE(CodexWorktreeLister::remove(info, true));
    const std::string prefix = "-C " + info.parentRepo.string() + " worktree remove ";
    EXPECT_EQ(readAll(t / "git-args"),
              prefix + info.path.string() + "\n" + prefix + "--force " + info.path.string() + "\n");
    fakeGit("rm -rf '" + info.path.string() + "'");
    EXPECT_TRUE(CodexWorktreeLister::remove(info, false));
}
