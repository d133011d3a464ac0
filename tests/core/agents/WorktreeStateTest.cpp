#include "agents/CodexWorktreeLister.h"
#include "agents/Git.h"
#include "agents/WorktreeDiscovery.h"

#include "GitRepo.h"
#include "host/ToolPaths.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sys/stat.h>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {

// Points git at a script of the test for the life of the object.
struct GitOverride {
    explicit GitOverride(std::optional<std::string> path) { ToolPaths::setOverride(Tool::git, std::move(path)); }
    ~GitOverride() { ToolPaths::setOverride(Tool::git, std::nullopt); }
};

fs::path recordingGit(TempTree& t, const std::string& extra = {}) {
    fs::path script = t / "fake-git";
    writeText(script, "#!/bin/sh\nprintf '%s\\n' \"$*\" >> '" + (t / "git-args").string() + "'\n" + extra + "exit 0\n");
    ::chmod(script.c_str(), 0755);
    return script;
}

std::string readAll(const fs::path& file) {
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

WorktreeInfo sized(const std::string& path, std::optional<std::int64_t> size) {
    WorktreeInfo info;
    info.path = path;
    info.size = size;
    return info;
}

} // namespace

TEST(WorktreeState, ParseStatusV2CountsNonHeaderLinesAndReadsTheHead) {
    struct Case {
        const char* name;
        std::string text;
        WorktreeDiscovery::StatusSummary expected;
    };
    const Case cases[] = {
        {"clean on main", "# branch.oid 1a2b\n# branch.head main\n", {"main", 0}},
        {"detached", "# branch.oid 1a2b\n# branch.head (detached)\n", {std::nullopt, 0}},
        {"one of each kind",
         "# branch.oid 1a2b\n# branch.head feat\n# branch.upstream origin/feat\n# branch.ab +1 -0\n# stash 2\n"
         "1 .M N... 100644 100644 100644 aa bb f.txt\n"
         "2 R. N... 100644 100644 100644 aa bb R100 new.txt\told.txt\n"
         "u UU N... 100644 100644 100644 100644 aa bb cc c.txt\n"
         "? untracked.txt\n",
         {"feat", 4}},
        {"no head line still counts", "1 .M N... 100644 100644 100644 aa bb f.txt\n? x\n", {std::nullopt, 2}},
        {"a branch named detached stays a branch", "# branch.head detached\n", {"detached", 0}},
        {"a later head replaces an earlier one", "# branch.head one\n# branch.head two\n", {"two", 0}},
        {"unborn branch keeps its name", "# branch.oid (initial)\n# branch.head main\n? a\n", {"main", 1}},
        {"empty lines are dropped", "\n\n# branch.head main\n\n? a\n\n", {"main", 1}},
        {"empty text", "", {std::nullopt, 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(WorktreeDiscovery::parseStatusV2(c.text), c.expected);
    }
}

TEST(WorktreeState, ParseWorktreeListKeepsPathsWholeAndDropsTheMainOne) {
    const std::string text = "worktree /r\nHEAD 1a2b\nbranch refs/heads/main\n\n"
                             "worktree /w/with  two blanks \nHEAD 3c4d\ndetached\n\n"
                             "worktree /w/locked\nHEAD 5e6f\nbranch refs/heads/x\nlocked reason\nprunable gone\n\n";
    EXPECT_EQ(WorktreeDiscovery::parseWorktreeList(text),
              (std::vector<std::string>{"/w/with  two blanks ", "/w/locked"}));
    EXPECT_TRUE(WorktreeDiscovery::parseWorktreeList("worktree /r\nHEAD 1a2b\nbranch refs/heads/main\n").empty());
    EXPECT_TRUE(WorktreeDiscovery::parseWorktreeList("").empty());
}

TEST(WorktreeState, SortedForDisplayPutsMeasuredFirstLargestFirstStably) {
    auto sorted = WorktreeDiscovery::sortedForDisplay({sized("/a", std::nullopt), sized("/b", 5), sized("/c", 1),
                                                       sized("/d", std::nullopt), sized("/e", 5), sized("/f", 0)});
    std::vector<std::string> order;
    for (const auto& w : sorted) order.push_back(w.path.string());
    EXPECT_EQ(order, (std::vector<std::string>{"/b", "/e", "/c", "/f", "/a", "/d"}));
}

TEST(WorktreeState, FilteredSeedsUseStringPrefixesAndKeepFirstOccurrences) {
    auto tree = treeOutsideTmp();
    auto& t = *tree;
    const std::string home = t.dir("home").string();
    const std::string repo = t.dir("home/src/repo").string();
    const std::string other = t.dir("other").string();
    const std::string library2 = t.dir("home/Library2").string(); // goes too: prefixes are strings
    t.dir("home/Library/x");
    t.dir("home/.codex/worktrees/a");
    t.dir("home/Documents/Codex/p");
    t.file("home/file.txt", 1);

    const std::vector<std::string> seeds{repo,
                                         "relative/path",
                                         "/",
                                         home,
                                         "/tmp",
                                         "/tmpdata/repo",
                                         "/private/tmp/x",
                                         "/var/folders/ab/x",
                                         "/private/var/folders/x",
                                         home + "/.codex/worktrees/a",
                                         home + "/Library/x",
                                         home + "/Documents/Codex/p",
                                         home + "/file.txt",
                                         home + "/missing",
                                         other,
                                         repo,
                                         library2};
    EXPECT_EQ(WorktreeDiscovery::filteredSeeds(seeds, home), (std::vector<fs::path>{repo, other}));
}

TEST(WorktreeState, CollectStateGivesTheFactsOfRealRepositories) {
    auto tree = treeOutsideTmp();
    auto& t = *tree;
    const fs::path repo = t / "repo";
    makeRepo(repo);
    const fs::path origin = t / "origin.git";
    git(t.root(), {"init", "-q", "--bare", origin.string()});
    git(repo, {"remote", "add", "origin", origin.string()});
    git(repo, {"push", "-q", "origin", "main"});

    // A branch with ten commits that were never pushed.
    git(repo, {"worktree", "add", "-q", "-b", "feature", (t / "wt/feature").string()});
    for (int i = 0; i < 10; ++i) commitFile(t / "wt/feature", "f" + std::to_string(i), "x");

    // Dirty files of every kind, one line each, on a branch in the middle of a merge.
    const fs::path dirty = t / "wt/dirty";
    commitFile(repo, "tracked.txt", "a\n");
    commitFile(repo, "gone.txt", "a\n");
    commitFile(repo, "old-name.txt", "a\n");
    commitFile(repo, "both.txt", "a\n");
    git(repo, {"worktree", "add", "-q", "-b", "dirty", dirty.string()});
    commitFile(repo, "conflict.txt", "main side\n");
    commitFile(dirty, "conflict.txt", "dirty side\n");
    git(dirty, {"merge", "-q", "main"}, /*mayFail=*/true);
    writeText(dirty / "tracked.txt", "changed\n"); // 1 .M
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
    const fs::path past = t / "wt/past main";
    git(repo, {"worktree", "add", "-q", "--detach", past.string(), "main"});
    commitFile(past, "p1", "1");
    commitFile(past, "p2", "2");
    git(past, {"tag", "on-orphan"}); // tags don't protect commits
    const fs::path onBranch = t / "wt/on-branch";
    git(repo, {"worktree", "add", "-q", "--detach", onBranch.string(), "feature~3"});

    const fs::path empty = t / "empty";
    makeRepo(empty, /*empty=*/true);

    struct Case {
        const char* name;
        fs::path path;
        WorktreeState expected;
    };
    const Case cases[] = {
        {"branch with unpushed commits", t / "wt/feature", {"feature", 0, 0}},
        {"dirty files of every kind", dirty, {"dirty", 7, 0}},
        {"detached past main, even with a tag", past, {std::nullopt, 0, 2}},
        {"detached on a branch commit", onBranch, {std::nullopt, 0, 0}},
        {"repository without commits", empty, {"main", 0, 0}},
        {"no repository at all", t.dir("plain"), {std::nullopt, 0, 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        auto state = WorktreeDiscovery::collectState(c.path);
        EXPECT_EQ(state, c.expected);
        WorktreeInfo info;
        info.dirtyFiles = state.dirtyFiles;
        info.orphanCommits = state.orphanCommits;
        EXPECT_EQ(info.isRisky(), c.expected.dirtyFiles > 0 || c.expected.orphanCommits > 0);
    }
}

TEST(WorktreeState, MainRepoOfSubfolderRootAndWorktreeIsTheSameRepository) {
    auto tree = treeOutsideTmp();
    auto& t = *tree;
    const fs::path repo = t / "r";
    makeRepo(repo);
    t.dir("r/sub/deeper");
    git(repo, {"worktree", "add", "-q", "-b", "w", (t / "w").string()});
    git(t.root(), {"init", "-q", "--bare", (t / "bare.git").string()});
    t.dir("plain");

    for (const fs::path& seed : {repo, repo / "sub", repo / "sub/deeper", t / "w"}) {
        SCOPED_TRACE(seed.string());
        EXPECT_EQ(WorktreeDiscovery::mainRepo(seed), repo);
    }
    EXPECT_EQ(WorktreeDiscovery::mainRepo(t / "bare.git"), std::nullopt);
    EXPECT_EQ(WorktreeDiscovery::mainRepo(t / "plain"), std::nullopt);
    EXPECT_EQ(WorktreeDiscovery::mainRepo(t / "missing"), std::nullopt);
}

TEST(WorktreeState, RemovalWithoutForceIsRefusedForADirtyWorktree) {
    auto tree = treeOutsideTmp();
    auto& t = *tree;
    const fs::path repo = t / "repo";
    makeRepo(repo);
    const fs::path path = t / "wt/dirty one";
    git(repo, {"worktree", "add", "-q", "-b", "keep-me", path.string()});
    writeText(path / "work.txt", "unsaved\n");

    WorktreeInfo info;
    info.path = path;
    info.parentRepo = repo;
    info.repoName = "dirty one";
    EXPECT_FALSE(CodexWorktreeLister::remove(info, false));
    EXPECT_EQ(readAll(path / "work.txt"), "unsaved\n");

    EXPECT_TRUE(CodexWorktreeLister::remove(info, true));
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(git(repo, {"branch", "--list", "keep-me"}).out, "  keep-me\n") << "the branch stays";
    EXPECT_TRUE(fs::exists(repo / "README"));
}

TEST(WorktreeState, RemovalPutsForceDirectlyBeforeThePathAndChecksWhatIsLeft) {
    TempTree t;
    const fs::path path = t.dir("wt/still here");
    WorktreeInfo info;
    info.path = path;
    info.parentRepo = t / "repo";
    GitOverride fake(recordingGit(t).string());

    // The fake git succeeds and leaves the folder: that is no removal.
    EXPECT_FALSE(CodexWorktreeLister::remove(info, false));
    EXPECT_FALSE(CodexWorktreeLister::remove(info, true));
    const std::string repo = (t / "repo").string();
    EXPECT_EQ(readAll(t / "git-args"), "-C " + repo + " worktree remove " + path.string() + "\n" + "-C " + repo
                                           + " worktree remove --force " + path.string() + "\n");

    // A git that succeeds and really removes the folder.
    GitOverride removing(recordingGit(t, "rm -rf '" + path.string() + "'\n").string());
    EXPECT_TRUE(CodexWorktreeLister::remove(info, false));
}

TEST(WorktreeState, WithoutGitNothingIsKnownAndNothingIsRemoved) {
    TempTree t;
    const fs::path path = t.dir("wt");
    GitOverride missing((t / "no-git-here").string());
    EXPECT_EQ(Git::binary(), std::nullopt);
    EXPECT_EQ(WorktreeDiscovery::collectState(path), (WorktreeState{std::nullopt, 0, 0}));
    WorktreeInfo info;
    info.path = path;
    info.parentRepo = t.root();
    EXPECT_FALSE(CodexWorktreeLister::remove(info, true));
    EXPECT_TRUE(fs::exists(path));
}

TEST(WorktreeState, AWorktreeWhoseRepositoryIsGoneHasNoFactsAndStays) {
    auto tree = treeOutsideTmp();
    auto& t = *tree;
    const fs::path repo = t / "doomed";
    makeRepo(repo);
    const fs::path path = t / "wt/left";
    git(repo, {"worktree", "add", "-q", "-b", "b", path.string()});
    fs::remove_all(repo);

    EXPECT_EQ(WorktreeDiscovery::collectState(path), (WorktreeState{std::nullopt, 0, 0}));
    WorktreeInfo info;
    info.path = path;
    info.parentRepo = repo;
    EXPECT_FALSE(CodexWorktreeLister::remove(info, true));
    EXPECT_TRUE(fs::exists(path / "README"));
}
