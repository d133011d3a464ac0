#include "agents/WorktreeDiscovery.h"

#include "GitRepo.h"
#include "host/ToolPaths.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sys/stat.h>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {

struct Facts {
    std::string parent;
    std::optional<std::string> branch;
    int dirtyFiles = 0;
    int orphanCommits = 0;
    bool hasRemote = false;
    bool operator==(const Facts&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Facts& f) {
    return out << "{" << f.parent << ", " << f.branch.value_or("<none>") << ", " << f.dirtyFiles << ", "
               << f.orphanCommits << ", " << f.hasRemote << "}";
}

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

// The order in which the system lists a folder.
std::vector<std::string> listingOrder(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& e : fs::directory_iterator(folder)) names.push_back(e.path().filename());
    return names;
}

void ballast(const fs::path& worktree, std::size_t bytes) {
    writeText(worktree / "ballast.bin", std::string(bytes, 'b'));
}

} // namespace

TEST(WorktreeDiscovery, WithNothingToFindReportsOnceWithTheEmptyList) {
    auto tree = treeOutsideTmp();
    ScopedEnv env{{"HOME", tree->dir("home").string()}};
    auto reports = discoverAll();
    ASSERT_EQ(reports.size(), 1u);
    EXPECT_TRUE(reports[0].empty());
}

// One home with every source of worktrees: seeds from the Codex state database and from Claude
// projects, the Codex worktree folder and the siblings of what it holds.
TEST(WorktreeDiscovery, FindsEveryWorktreeOnceWithGitFactsThenSizes) {
    auto tree = treeOutsideTmp();
    auto& t = *tree;
    const fs::path home = t.dir("home");
    ScopedEnv env{{"HOME", home.string()}};
    const fs::path worktrees = home / ".codex/worktrees";

    const fs::path alpha = home / "src/alpha";
    makeRepo(alpha);
    commitFile(alpha, "sub/file", "x");
    git(alpha, {"remote", "add", "origin", "https://example.invalid/alpha.git"});
    const fs::path feature = worktrees / "a2/feature"; // found by git and by the folder scan
    git(alpha, {"worktree", "add", "-q", "-b", "feature", feature.string()});
    for (int i = 0; i < 3; ++i) commitFile(feature, std::string("f").append(std::to_string(i)), "never pushed");
    const fs::path past = home / "wt/alpha past main";
    git(alpha, {"worktree", "add", "-q", "--detach", past.string(), "main"});
    commitFile(past, "p1", "1");
    commitFile(past, "p2", "2");

    const fs::path beta = home / "src/beta";
    makeRepo(beta);
    commitFile(beta, "tracked", "a");
    const fs::path betaDirty = home / "wt/beta-dirty";
    git(beta, {"worktree", "add", "-q", "-b", "dirty", betaDirty.string()});
    writeText(betaDirty / "tracked", "changed");
    writeText(betaDirty / "new", "untracked");

    const fs::path solo = home / "src/solo";
    makeRepo(solo);
    const fs::path empty = home / "src/empty";
    makeRepo(empty, /*empty=*/true);

    // Known to no seed: reached through the folder scan, and its sibling through the repository.
    const fs::path gamma = home / "src/gamma";
    makeRepo(gamma);
    git(gamma, {"remote", "add", "upstream", "https://example.invalid/gamma.git"});
    const fs::path gammaScanned = worktrees / "a1/gamma-wt";
    git(gamma, {"worktree", "add", "-q", "-b", "g1", gammaScanned.string()});
    const fs::path gammaSibling = home / "elsewhere/gamma-side";
    git(gamma, {"worktree", "add", "-q", "-b", "g2", gammaSibling.string()});

    const fs::path doomed = home / "src/doomed";
    makeRepo(doomed);
    const fs::path doomedWt = worktrees / "a3/doomed-wt";
    git(doomed, {"worktree", "add", "-q", "-b", "d", doomedWt.string()});
    fs::remove_all(doomed);

    // Entries of the folder scan that are no worktrees, and one with blanks after "gitdir:".
    writeText(worktrees / "a4/sub/.git", "gitdir: " + alpha.string() + "/.git/modules/x\n");
    git(t.root(), {"init", "-q", (worktrees / "a5/clone").string()});
    writeText(worktrees / "a7/bad/.git", "gitdir: /x\xFF/.git/worktrees/y\n");
    writeText(worktrees / "README", "not a folder");
    fs::create_directories(worktrees / "a8/fifo");
    ASSERT_EQ(::mkfifo((worktrees / "a8/fifo/.git").c_str(), 0644), 0);
    const fs::path spaced = worktrees / "a6/spaced";
    writeText(spaced / ".git", "  gitdir:     " + beta.string() + "/.git/worktrees/spaced  \n\n");

    ballast(feature, 40'000);
    ballast(past, 30'000);
    ballast(betaDirty, 20'000);
    ballast(gammaScanned, 50'000);
    ballast(gammaSibling, 10'000);
    ballast(doomedWt, 5'000);

    t.dir("home/Library/x");
    t.dir("home/src/plain");
    makeStateDatabase(home / ".codex/state_5.sqlite",
                      {(alpha / "sub").string(), home.string(), "/tmpdata/repo", solo.string(), empty.string(),
                       (home / "Library/x").string(), (alpha / "sub").string(), (home / "src/missing").string(),
                       "rel/x", (home / "src/plain").string()});
    writeText(home / ".claude/projects/p1/s.jsonl", R"({"cwd":")" + betaDirty.string()
                                                        + R"("})"
                                                          "\n");

    auto reports = discoverAll();

    const std::map<std::string, Facts> expected{
        {feature.string(), {alpha.string(), "feature", 0, 0, true}},
        {past.string(), {alpha.string(), std::nullopt, 0, 2, true}},
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
        for (const auto& w : reports[k]) {
            EXPECT_EQ(w.repoName, w.path.filename().string());
            EXPECT_EQ(w.size.has_value(), w.lastModified.has_value());
        }
        EXPECT_EQ(reports[k], WorktreeDiscovery::sortedForDisplay(reports[k]));
    }

    // The first list is in candidate order: the seeds' repositories, the folder scan, the siblings.
    const auto& first = reports.front();
    std::vector<std::string> scanOrder;
    for (const auto& child : listingOrder(worktrees)) {
        if (child == "a1") scanOrder.push_back(gammaScanned.string());
        if (child == "a3") scanOrder.push_back(doomedWt.string());
        if (child == "a6") scanOrder.push_back(spaced.string());
    }
    std::vector<std::string> firstOrder;
    for (const auto& w : first) firstOrder.push_back(w.path.string());
    EXPECT_EQ(std::vector<std::string>(firstOrder.begin() + 3, firstOrder.end()),
              (std::vector<std::string>{scanOrder[0], scanOrder[1], scanOrder[2], gammaSibling.string()}));

    // The last list holds what the file system gives, largest first.
    std::vector<std::pair<std::int64_t, std::string>> measured;
    for (const auto& w : reports.back()) {
        SCOPED_TRACE(w.path.string());
        const TreeFacts facts = treeFacts(w.path);
        EXPECT_EQ(w.size, facts.bytes);
        ASSERT_TRUE(w.lastModified.has_value());
        EXPECT_EQ(w.lastModified->time_since_epoch().count(), facts.newestSeconds);
        measured.emplace_back(facts.bytes, w.path.string());
    }
    std::stable_sort(measured.begin(), measured.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    std::vector<std::string> lastOrder;
    for (const auto& w : reports.back()) lastOrder.push_back(w.path.string());
    std::vector<std::string> bySize;
    for (const auto& m : measured) bySize.push_back(m.second);
    EXPECT_EQ(lastOrder, bySize);
}

TEST(WorktreeDiscovery, WithoutGitTheFolderScanStillFindsWorktrees) {
    auto tree = treeOutsideTmp();
    auto& t = *tree;
    const fs::path home = t.dir("home");
    ScopedEnv env{{"HOME", home.string()}};
    const fs::path repo = home / "src/r";
    makeRepo(repo);
    const fs::path wt = home / ".codex/worktrees/h/r-wt";
    git(repo, {"worktree", "add", "-q", "-b", "b", wt.string()});
    git(repo, {"worktree", "add", "-q", "-b", "c", (home / "sibling").string()});

    ToolPaths::setOverride(Tool::git, (t / "no-git").string());
    auto reports = discoverAll();
    ToolPaths::setOverride(Tool::git, std::nullopt);

    ASSERT_EQ(reports.size(), 2u);
    EXPECT_EQ(factsOf(reports[1]),
              (std::map<std::string, Facts>{{wt.string(), {repo.string(), std::nullopt, 0, 0, false}}}));
}
