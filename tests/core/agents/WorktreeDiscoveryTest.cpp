#include "agents/WorktreeDiscovery.h"

#include "GitRepo.h"
#include "host/ToolPaths.h"

#include <gtest/gtest.h>

#include <map>
#include <sys/stat.h>
#include <tuple>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {

// Parent, branch, dirty files, orphan commits, remote.
using Facts = std::tuple<std::string, std::optional<std::string>, int, int, bool>;

std::map<std::string, Facts> factsOf(const std::vector<WorktreeInfo>& list) {
    std::map<std::string, Facts> facts;
    for (const auto& w : list)
        facts[w.path.string()] = {w.parentRepo.string(), w.branch, w.dirtyFiles, w.orphanCommits, w.hasRemote};
    return facts;
}

std::vector<std::vector<WorktreeInfo>> discoverAll() {
    std::vector<std::vector<WorktreeInfo>> reports;
    WorktreeDiscovery::discover([&](const std::vector<WorktreeInfo>& list) { reports.push_back(list); });
    return reports;
}

} // namespace

// One home with every source of worktrees: seeds from the Codex state database and from Claude
// projects, the Codex worktree folder and the siblings of what it holds.
TEST(WorktreeDiscovery, FindsEveryWorktreeOnceWithGitFactsThenSizes) {
    AgentHome h;
    const fs::path home = h.home, worktrees = home / ".codex/worktrees";

    const fs::path alpha = home / "src/alpha";
    makeRepo(alpha);
    commitFile(alpha, "sub/file", "x");
    git(alpha, {"remote", "add", "origin", "https://example.invalid/alpha.git"});
    const fs::path feature = worktrees / "a2/feature"; // found by git and by the folder scan
    git(alpha, {"worktree", "add", "-q", "-b", "feature", feature.string()});
    commitFile(feature, "f1", "never pushed");

    const fs::path beta = home / "src/beta", betaDirty = home / "wt/beta dirty";
    makeRepo(beta);
    commitFile(beta, "tracked", "a");
    git(beta, {"worktree", "add", "-q", "-b", "dirty", betaDirty.string()});
    writeText(betaDirty / "tracked", "changed");
    writeText(betaDirty / "new", "untracked");

    // A repository without worktrees and one without commits give none, a bare one no answer.
    const fs::path solo = home / "src/solo", empty = home / "src/empty", bare = home / "src/bare.git";
    makeRepo(solo);
    makeRepo(empty, /*empty=*/true);
    git(home, {"init", "-q", "--bare", bare.string()});

    // Known to no seed: reached through the folder scan, and its sibling through the repository.
    const fs::path gamma = home / "src/gamma", gammaScanned = worktrees / "a1/gamma-wt";
    const fs::path gammaSibling = home / "elsewhere/gamma-side";
    makeRepo(gamma);
    git(gamma, {"remote", "add", "upstream", "https://example.invalid/gamma.git"});
    git(gamma, {"worktree", "add", "-q", "-b", "g1", gammaScanned.string()});
    git(gamma, {"worktree", "add", "-q", "-b", "g2", gammaSibling.string()});

    const fs::path doomed = home / "src/doomed", doomedWt = worktrees / "a3/doomed-wt";
    makeRepo(doomed);
    git(doomed, {"worktree", "add", "-q", "-b", "d", doomedWt.string()});
    fs::remove_all(doomed);

    // Entries of the folder scan that are no worktrees (a submodule, a clone, a bad path, a file, a
    // FIFO), and one with blanks around "gitdir:".
    writeText(worktrees / "a4/sub/.git", "gitdir: " + alpha.string() + "/.git/modules/x\n");
    git(home, {"init", "-q", (worktrees / "a5/clone").string()});
    writeText(worktrees / "a7/bad/.git", "gitdir: /x\xFF/.git/worktrees/y\n");
    writeText(worktrees / "README", "not a folder");
    fs::create_directories(worktrees / "a8/fifo");
    ASSERT_EQ(::mkfifo((worktrees / "a8/fifo/.git").c_str(), 0644), 0);
    const fs::path spaced = worktrees / "a6/spaced";
    writeText(spaced / ".git", "  gitdir:     " + beta.string() + "/.git/worktrees/spaced  \n\n");

    const std::pair<fs::path, std::size_t> ballast[] = {
        {feature, 40'000}, {betaDirty, 20'000}, {gammaScanned, 50'000}, {gammaSibling, 10'000}, {doomedWt, 5'000}};
    for (const auto& [wt, bytes] : ballast) writeText(wt / "ballast.bin", std::string(bytes, 'b'));

    h.tree->dir("home/src/plain");
    makeStateDatabase(home / ".codex/state_5.sqlite",
                      {(alpha / "sub").string(), home.string(), solo.string(), empty.string(), bare.string(),
                       (alpha / "sub").string(), (home / "src/missing").string(), (home / "src/plain").string()});
    writeText(home / ".claude/projects/p1/s.jsonl", "{\"cwd\":\"" + betaDirty.string() + "\"}\n");

    const auto reports = discoverAll();

    const std::map<std::string, Facts> expected{
        {feature.string(), {alpha.string(), "feature", 0, 0, true}},
        {betaDirty.string(), {beta.string(), "dirty", 2, 0, false}},
        {gammaScanned.string(), {gamma.string(), "g1", 0, 0, true}},
        {gammaSibling.string(), {gamma.string(), "g2", 0, 0, true}},
        {doomedWt.string(), {doomed.string(), std::nullopt, 0, 0, false}},
        {spaced.string(), {beta.string(), std::nullopt, 0, 0, false}},
    };
    ASSERT_EQ(reports.size(), expected.size() + 1);
    for (std::size_t k = 0; k < reports.size(); ++k) {
        SCOPED_TRACE("report " + std::to_string(k));
        EXPECT_EQ(factsOf(reports[k]), expected);
        EXPECT_EQ(std::count_if(reports[k].begin(), reports[k].end(), [](const auto& w) { return w.size.has_value(); }),
                  static_cast<long>(k));
        EXPECT_EQ(reports[k], WorktreeDiscovery::sortedForDisplay(reports[k]));
    }

    // The last list holds what the file system gives.
    for (const auto& w : reports.back()) {
        const TreeFacts facts = treeFacts(w.path);
        EXPECT_EQ(w.size, facts.bytes) << w.path;
        EXPECT_EQ(w.lastModified, std::chrono::sys_seconds(std::chrono::seconds(facts.newestSeconds))) << w.path;
    }
}

TEST(WorktreeDiscovery, WithoutGitTheFolderScanStillFindsWorktrees) {
    AgentHome h;
    const fs::path repo = h.home / "src/r", wt = h.home / ".codex/worktrees/h/r-wt";
    makeRepo(repo);
    git(repo, {"worktree", "add", "-q", "-b", "b", wt.string()});
    git(repo, {"worktree", "add", "-q", "-b", "c", (h.home / "sibling").string()});

    ToolPaths::setOverride(Tool::git, (h.home / "no-git").string());
    const auto reports = discoverAll();
    ToolPaths::setOverride(Tool::git, std::nullopt);

    ASSERT_EQ(reports.size(), 2u);
    EXPECT_EQ(factsOf(reports[1]), (std::map<std::string, Facts>{{wt.string(), {repo.string(), {}, 0, 0, false}}}));
}
