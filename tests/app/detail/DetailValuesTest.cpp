// What the panel derives from a result and the model's lists, before any widget lays it out.

#include "DetailValues.h"

#include "text/Localization.h"

#include <gtest/gtest.h>

namespace lumabroom {
namespace {

RuleScanResult tmpFolders(std::size_t count, std::int64_t everyThirdSize) {
    CleanRule rule;
    rule.id = "sys.tmp-folders";
    RuleScanResult result{rule, {}};
    for (std::size_t i = 0; i < count; ++i)
        result.entries.push_back({"/t/" + std::to_string(i), i % 3 == 0 ? everyThirdSize : 10, {}});
    return result;
}

WorktreeInfo worktree(std::string path, std::string repo, std::optional<std::int64_t> size, int dirty = 0,
                      int orphans = 0, bool remote = true) {
    WorktreeInfo w;
    w.path = path;
    w.repoName = w.path.filename().string();
    w.parentRepo = repo;
    w.size = size;
    w.dirtyFiles = dirty;
    w.orphanCommits = orphans;
    w.hasRemote = remote;
    return w;
}

} // namespace

TEST(DetailValues, EmbeddedCommandIsTheSecondPieceBetweenBackticks) {
    const struct {
        std::string note;
        std::optional<std::string> command;
    } cases[] = {
        {"Run `brew cleanup` to clear old versions", "brew cleanup"},
        {"`go clean -cache`", std::nullopt}, // one piece only
        {"Only words, no command", std::nullopt},
        {"Empty `` pieces `are dropped`", " pieces "},
        {"", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.note);
        EXPECT_EQ(DetailValues::embeddedCommand(c.note), c.command);
    }
}

TEST(DetailValues, OnlyALongTemporaryFolderListDropsItsSmallFolders) {
    constexpr std::int64_t big = DetailValues::kTmpFolderMinBytes;
    EXPECT_EQ(DetailValues::visibleEntries(tmpFolders(60, big)).size(), 60u);
    const auto long61 = DetailValues::visibleEntries(tmpFolders(61, big));
    ASSERT_EQ(long61.size(), 21u);
    EXPECT_EQ(long61[1].url, "/t/3");
    EXPECT_TRUE(DetailValues::visibleEntries(tmpFolders(61, big - 1)).empty());
    RuleScanResult other = tmpFolders(61, 1);
    other.rule.id = "sys.other";
    EXPECT_EQ(DetailValues::visibleEntries(other).size(), 61u);
}

TEST(DetailValues, WorktreeWarningSaysWhatIsLostAndMentionsTheRemoteOnlyThen) {
    Localization::setLanguageForThisRun(AppLanguage::chinese);
    const struct {
        WorktreeInfo info;
        std::string warning;
    } cases[] = {
        {worktree("/w/a", "/r", 1, 3, 0, false),
         "删掉之后这些东西找不回来:3 个改了还没提交的文件。\n这个仓库没有配远端,也就没有别处的备份。"},
        {worktree("/w/b", "/r", 1, 0, 0, false),
         "没有没提交的改动,提交也都在分支上。删掉这个工作副本不会丢任何东西——分支本身不会被删。"},
        {worktree("/w/c", "/r", 1, 2, 5, true),
         "删掉之后这些东西找不回来:2 个改了还没提交的文件、5 个只存在于这里的提交(不在任何分支上)。"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.info.id());
        EXPECT_EQ(DetailValues::worktreeDeleteWarning(c.info), c.warning);
    }
    Localization::setLanguageForThisRun(AppLanguage::english);
    EXPECT_EQ(DetailValues::worktreeDeleteWarning(cases[2].info),
              "After deletion these can't be got back: 2 changed files not committed, 5 commits that exist only here "
              "(on no branch).");
    EXPECT_EQ(DetailValues::worktreeDeleteWarning(worktree("/w/d", "/r", 1, 1, 0, false)),
              "After deletion these can't be got back: 1 changed file not committed.\nThis repository has no remote, "
              "so there is no backup elsewhere.");
    Localization::setLanguageForThisRun(AppLanguage::chinese);
}

TEST(DetailValues, WorktreeGroupsPutTheLargestRepositoryFirstAndUnmeasuredRowsLast) {
    const std::vector<WorktreeInfo> list{
        worktree("/w/small", "/r/one", 10), worktree("/w/pending", "/r/two", std::nullopt),
        worktree("/w/large", "/r/two", 500), worktree("/w/mid", "/r/one", 200), worktree("/w/zero", "/r/two", 0)};
    const auto groups = DetailValues::worktreeGroups(list);
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(groups[0].repoPath, "/r/two");
    std::vector<std::string> order;
    for (const auto& g : groups)
        for (const auto& w : g.items) order.push_back(w.path.string());
    EXPECT_EQ(order, (std::vector<std::string>{"/w/large", "/w/zero", "/w/pending", "/w/mid", "/w/small"}));
    EXPECT_EQ(DetailValues::largestWorktree(list), 500);
    EXPECT_EQ(DetailValues::largestWorktree(std::vector<WorktreeInfo>{worktree("/w/p", "/r", std::nullopt)}), 0);
    EXPECT_EQ(DetailValues::fraction(100, 0), 0.0);
    EXPECT_EQ(DetailValues::fraction(50, 200), 0.25);
}

} // namespace lumabroom
