#include "agents/WorktreeDiscovery.h"

#include "GitRepo.h"

#include <gtest/gtest.h>

#include <map>
#include <sys/stat.h>
#include <tuple>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {

// Parent, branch, dirty files, orphan commits, remote, risky.
using Facts = std::tuple<std::string, std::optional<std::string>, int, int, bool, bool>;

std::map<std::string, Facts> factsOf(const std::vector<WorktreeInfo>& list) {
    std::map<std::string, Facts> facts;
    for (const auto& w : list)
        facts[w.path.string()] = {w.parentRepo.string(), w.branch,    w.dirtyFiles,
                                  w.orphanCommits,       w.hasRemote, w.isRisky()};
    return facts;
}

} // namespace

// One home with every source of worktrees: seeds from the Codex state database and from Claude
// projects, the Codex worktree folder and the siblings of what it holds.
TEST(WorktreeDiscovery, FindsEveryWorktreeOnceWithGitFactsThenSizes) {
    AgentHome h;
    const fs::path home = h.home, worktrees = home / ".codex/worktrees";

    // Seeded by a subfolder. Git and the folder scan both find the worktree, whose ".git" file names
    // the parent in another spelling: git's must win.
    const fs::path alpha = home / "src/alpha", feature = worktrees / "a2/feature";
    makeRepo(alpha);
    commitFile(alpha, "sub/file", "x");
    git(alpha, {"remote", "add", "origin", "https://example.invalid/alpha.git"});
    git(alpha, {"worktree", "add", "-q", "-b", "feature", feature.string()});
    writeText(feature / ".git", "gitdir: " + alpha.string() + "/./.git/worktrees/feature\n");

    // Seeded by a Claude project only.
    const fs::path beta = home / "src/beta", betaDirty = home / "wt/beta dirty";
    makeRepo(beta);
    git(beta, {"worktree", "add", "-q", "-b", "dirty", betaDirty.string()});
    writeText(betaDirty / "new", "untracked");

    // Known to no seed: reached through the folder scan, and its sibling through the repository.
    const fs::path gamma = home / "src/gamma", scanned = worktrees / "a1/gamma-wt", sibling = home / "gamma-side";
    makeRepo(gamma);
    git(gamma, {"worktree", "add", "-q", "-b", "g1", scanned.string()});
    git(gamma, {"worktree", "add", "-q", "--detach", sibling.string()});
    commitFile(sibling, "lost", "only here");

    const fs::path doomed = home / "src/doomed", doomedWt = worktrees / "a3/doomed-wt";
    makeRepo(doomed);
    git(doomed, {"worktree", "add", "-q", "-b", "d", doomedWt.string()});
    fs::remove_all(doomed);

    // Entries of the folder scan that are no worktrees (a submodule, a bad path, a FIFO), and one with
    // blanks around "gitdir:".
    writeText(worktrees / "a4/sub/.git", "gitdir: " + alpha.string() + "/.git/modules/x\n");
    writeText(worktrees / "a7/bad/.git", "gitdir: /x\xFF/.git/worktrees/y\n");
    fs::create_directories(worktrees / "a8/fifo");
    ASSERT_EQ(::mkfifo((worktrees / "a8/fifo/.git").c_str(), 0644), 0);
    const fs::path spaced = worktrees / "a6/spaced";
    writeText(spaced / ".git", "  gitdir:     " + gamma.string() + "/.git/worktrees/spaced  \n\n");

    const std::pair<fs::path, std::size_t> ballast[] = {
        {feature, 40'000}, {betaDirty, 20'000}, {scanned, 50'000}, {sibling, 10'000}, {doomedWt, 5'000}};
    for (const auto& [wt, bytes] : ballast) writeText(wt / "ballast.bin", std::string(bytes, 'b'));

    makeStateDatabase(home / ".codex/state_5.sqlite", {(alpha / "sub").string()});
    writeText(home / ".claude/projects/p1/s.jsonl", "{\"cwd\":\"" + betaDirty.string() + "\"}\n");

    std::vector<std::vector<WorktreeInfo>> reports;
    WorktreeDiscovery::discover([&](const std::vector<WorktreeInfo>& list) { reports.push_back(list); });

    const std::map<std::string, Facts> expected{
        {feature.string(), {alpha.string(), "feature", 0, 0, true, false}},
        {betaDirty.string(), {beta.string(), "dirty", 1, 0, false, true}},
        {scanned.string(), {gamma.string(), "g1", 0, 0, false, false}},
        {sibling.string(), {gamma.string(), std::nullopt, 0, 1, false, true}},
        {doomedWt.string(), {doomed.string(), std::nullopt, 0, 0, false, false}},
        {spaced.string(), {gamma.string(), std::nullopt, 0, 0, false, false}},
    };
    ASSERT_EQ(reports.size(), expected.size() + 1);
    for (std::size_t k = 0; k < reports.size(); ++k) {
        SCOPED_TRACE("report " + std::to_string(k));
        EXPECT_EQ(factsOf(reports[k]), expected);
        EXPECT_EQ(std::count_if(reports[k].begin(), reports[k].end(), [](const auto& w) { return w.size.has_value(); }),
                  static_cast<long>(k));
        EXPECT_EQ(reports[k], WorktreeDiscovery::sortedForDisplay(reports[k]));
    }
    // Each size lands on its own worktree; the dates are checked in AgentsCliTest.
    for (const auto& w : reports.back()) EXPECT_EQ(w.size, treeFacts(w.path).bytes) << w.path;
}

// Git lists a worktree whose folder was deleted by hand until it is pruned; there is nothing left
// to remove. A home reached through a link makes the folder scan and git spell one worktree two ways.
TEST(WorktreeDiscovery, EachExistingWorktreeOnceWhenHomeIsALink) {
    AgentHome h;
    const fs::path link = h.tree->symlink("home-link", h.home);
    ScopedEnv env{{"HOME", link.string()}};
    const fs::path repo = h.home / "src/repo", kept = h.home / ".codex/worktrees/a1/kept", gone = h.home / "gone";
    makeRepo(repo);
    git(repo, {"worktree", "add", "-q", "-b", "kept", kept.string()});
    git(repo, {"worktree", "add", "-q", "-b", "gone", gone.string()});
    fs::remove_all(gone);
    ASSERT_NE(git(repo, {"worktree", "list", "--porcelain"}).out.find("worktree " + gone.string() + "\n"),
              std::string::npos);
    writeText(h.home / ".claude/projects/p1/s.jsonl", "{\"cwd\":\"" + (link / "src/repo").string() + "\"}\n");

    std::vector<WorktreeInfo> last;
    WorktreeDiscovery::discover([&](const std::vector<WorktreeInfo>& list) { last = list; });
    std::vector<std::string> paths;
    for (const auto& w : last) paths.push_back(w.path.string());
    EXPECT_EQ(paths, std::vector<std::string>{fs::canonical(kept).string()});
}
