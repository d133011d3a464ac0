// Per-item actions, worktrees and Docker: each through the core's tool functions, with the tools
// replaced by scripts that log their arguments.

#include "FakeTool.h"
#include "ModelTestSupport.h"

#include "host/ToolPaths.h"
#include "support/TempTree.h"
#include "text/Formatting.h"
#include "tools/DockerCLI.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {

using Args = std::vector<std::string>;

// The tools of one test: fakes for docker, ollama, xcrun, git and the shell, a daemon socket that
// exists or not, and a home of the test's own.
struct Tools {
    TempTree tree;
    ScopedEnv home{{"HOME", (tree / "home").string()}};
    FakeTool docker{tree / "bin/docker"}, ollama{tree / "bin/ollama"}, xcrun{tree / "bin/xcrun"}, git{tree / "bin/git"},
        shell{tree / "bin/shell"};
    fs::path socket = tree / "docker.sock";
    std::shared_ptr<ServiceLog> log = std::make_shared<ServiceLog>();

    Tools() {
        tree.dir("home");
        ToolPaths::setOverride(Tool::docker, docker.binary.string());
        ToolPaths::setOverride(Tool::ollama, ollama.binary.string());
        ToolPaths::setOverride(Tool::xcrun, xcrun.binary.string());
        ToolPaths::setOverride(Tool::git, git.binary.string());
        ToolPaths::setOverride(Tool::shell, shell.binary.string());
        DockerCLI::setSystemSocketForTesting(socket.string());
    }
    ~Tools() {
        for (Tool tool : {Tool::docker, Tool::ollama, Tool::xcrun, Tool::git, Tool::shell})
            ToolPaths::setOverride(tool, std::nullopt);
        DockerCLI::setSystemSocketForTesting(std::nullopt);
    }
    void daemonRuns() { writeText(socket, ""); }

    // Rules of the catalogue's ids with no paths, so that a rescan shows in the log and finds nothing.
    std::vector<CleanRule> rules() const {
        std::vector<CleanRule> rules;
        for (const char* id : {"tool.orbstack", "tool.docker", "tool.ollama", "xcode.simulator-devices",
                               "code.claude-sessions", "code.codex-sessions", "x.maintained"})
            rules.push_back(makeRule(id, Category::tool, SafetyLevel::reportOnly, {(tree / "nothing").string()}));
        return rules;
    }
    ModelServices services() const { return testServices(rules(), log); }

    // Waits until the summary is set and every rescan asked for has landed.
    bool waitForSummary(AppModel& model, std::size_t rescans) {
        return waitUntil([&] { return model.lastSummary() && log->scansSoFar().size() == rescans; });
    }
};

WorktreeInfo worktree(const fs::path& path, std::optional<std::int64_t> size, int dirtyFiles = 0,
                      int orphanCommits = 0) {
    WorktreeInfo w;
    w.path = path;
    w.repoName = path.filename().string();
    w.parentRepo = path.parent_path() / "main";
    w.size = size;
    w.dirtyFiles = dirtyFiles;
    w.orphanCommits = orphanCommits;
    return w;
}

} // namespace

TEST(Maintenance, SaysWhetherTheCommandRanClearsItsFlagAndRescansItsRule) {
    for (int status : {0, 1}) {
        SCOPED_TRACE(status);
        Tools t;
        t.shell.respond("*", "", status);
        AppModel model(t.services());
        SignalCount running(model, &AppModel::runningCommandRuleIDChanged);
        model.runMaintenance({"x.maintained", "tool gc --all", ""});
        EXPECT_EQ(model.runningCommandRuleID(), "x.maintained");
        model.runMaintenance({"x.maintained", "another", ""});
        ASSERT_TRUE(t.waitForSummary(model, 1));
        EXPECT_EQ(model.lastSummary()->text(),
                  status == 0 ? "已执行 tool gc --all" : "tool gc --all 执行失败(命令不存在或报错)");
        EXPECT_FALSE(model.runningCommandRuleID());
        EXPECT_EQ(running.count, 2);
        EXPECT_EQ(t.shell.calls(), (std::vector<Args>{{"-l", "-c", "tool gc --all"}}));
        EXPECT_EQ(t.log->scansSoFar(), (std::vector<std::set<std::string>>{{"x.maintained"}}));
    }
}

TEST(ItemDeletes, SimulatorsAndModelsGoThroughTheirToolsAndRescanTheirRule) {
    Tools t;
    t.ollama.respond("*", "", 1);
    AppModel model(t.services());
    const ScanEntry device{t.tree / "CoreSimulator/Devices/0A1B2C3D-0000-1111-2222-333344445555", 4096, {}};
    model.deleteSimulator(device);
    ASSERT_TRUE(t.waitForSummary(model, 1));
    EXPECT_EQ(*model.lastSummary(),
              (ActionSummary{ActionSummary::SimulatorDeleted{"0A1B2C3D-0000-1111-2222-333344445555", 4096}}));
    EXPECT_EQ(t.xcrun.calls(), (std::vector<Args>{{"simctl", "delete", "0A1B2C3D-0000-1111-2222-333344445555"}}));
    EXPECT_EQ(t.log->scansSoFar().back(), (std::set<std::string>{"xcode.simulator-devices"}));

    model.deleteOllamaModel({t.tree / "home/.ollama/models/manifests/registry.ollama.ai/library/llama3/8b", 2000, {}});
    ASSERT_TRUE(waitUntil([&] { return t.log->scansSoFar().size() == 2; }));
    EXPECT_EQ(model.lastSummary()->text(), "删除 llama3:8b 失败:Ollama 未在运行或找不到 CLI");
    EXPECT_EQ(t.ollama.calls(), (std::vector<Args>{{"rm", "llama3:8b"}}));
    EXPECT_EQ(t.log->scansSoFar().back(), (std::set<std::string>{"tool.ollama"}));

    // No device id, no model name: nothing happens.
    const auto before = model.lastSummary();
    model.deleteSimulator({t.tree / "CoreSimulator/Devices/not-a-uuid", 1, {}});
    model.deleteOllamaModel({t.tree / "home/.ollama/models/blobs/sha256-1", 1, {}});
    settle();
    EXPECT_EQ(model.lastSummary(), before);
    EXPECT_EQ(t.log->scansSoFar().size(), 2u);
}

TEST(ItemDeletes, AMissingToolGivesTheFailureSentence) {
    Tools t;
    for (Tool tool : {Tool::xcrun, Tool::ollama, Tool::shell})
        ToolPaths::setOverride(tool, (t.tree / "bin/absent").string());
    AppModel model(t.services());
    struct Case {
        std::function<void()> action;
        std::string sentence;
    } cases[] = {
        {[&] {
             model.deleteSimulator({t.tree / "Devices/0A1B2C3D-0000-1111-2222-333344445555", 1, {}});
         },
         "删除 0A1B2C3D-0000-1111-2222-333344445555 失败(可能正在运行,请先关闭模拟器)"},
        {[&] {
             model.deleteOllamaModel(
                 {t.tree / "home/.ollama/models/manifests/registry.ollama.ai/library/phi/latest", 1, {}});
         },
         "删除 phi:latest 失败:Ollama 未在运行或找不到 CLI"},
        {[&] {
             model.runMaintenance({"x.maintained", "tool gc", ""});
         },
         "tool gc 执行失败(命令不存在或报错)"},
    };
    std::size_t rescans = 0;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.sentence);
        c.action();
        ASSERT_TRUE(t.waitForSummary(model, ++rescans));
        EXPECT_EQ(model.lastSummary()->text(), c.sentence);
    }
}

TEST(SessionDeletes, TheRowGoesAtOnceTheFileToTheTrashAndTheListIsReadAgain) {
    Tools t;
    const fs::path big = t.tree.file("home/.codex/sessions/2025/06/big.jsonl", 3000);
    const fs::path small = t.tree.file("home/.codex/sessions/2025/06/small.jsonl", 1000);
    AppModel model(t.services());
    model.loadTopSessions("code.codex-sessions");
    EXPECT_TRUE(model.isLoadingTopSessions());
    ASSERT_TRUE(waitUntil([&] { return !model.isLoadingTopSessions(); }));
    ASSERT_TRUE(model.topSessions());
    ASSERT_EQ(model.topSessions()->size(), 2u);
    const ScanEntry first = model.topSessions()->at(0);
    EXPECT_EQ(first.url, big);

    SignalCount loading(model, &AppModel::isLoadingTopSessionsChanged);
    model.deleteSessionFile(first, "code.codex-sessions");
    ASSERT_EQ(model.topSessions()->size(), 1u);
    ASSERT_TRUE(t.waitForSummary(model, 1));
    EXPECT_EQ(*model.lastSummary(), (ActionSummary{ActionSummary::Cleaned{3000, true, 0}}));
    EXPECT_FALSE(fs::exists(big));
    ASSERT_TRUE(waitUntil([&] { return model.topSessions()->size() == 1 && model.topSessions()->at(0).url == small; }));
    EXPECT_EQ(loading.count, 0);
    EXPECT_EQ(t.log->scansSoFar(), (std::vector<std::set<std::string>>{{"code.codex-sessions"}}));

    // Every file of a list failing still reads as a clean, of nothing, with the count.
    model.deleteSessionFiles({{t.tree / "home/gone-1.jsonl", 10, {}}, {t.tree / "home/gone-2.jsonl", 20, {}}},
                             "code.codex-sessions");
    ASSERT_TRUE(t.waitForSummary(model, 2));
    EXPECT_EQ(*model.lastSummary(), (ActionSummary{ActionSummary::Cleaned{0, true, 2}}));
    EXPECT_EQ(model.lastSummary()->text(), "已清理 " + Formatting::bytes(0) + ",清空废纸篓后释放,2 项失败");
}

TEST(SessionDeletes, ABatchCanBeUndoneAndTheFilesComeBackToTheirRule) {
    Tools t;
    ScopedEnv trash{{"XDG_DATA_HOME", (t.tree / "home/.local/share").string()}};
    const fs::path kept = t.tree.file("home/.codex/sessions/2025/06/kept.jsonl", 3000, 'k');
    const fs::path single = t.tree.file("home/.codex/sessions/2025/06/single.jsonl", 1000, 's');
    AppModel model(t.services());
    model.deleteSessionFile({single, 1000, {}}, "code.codex-sessions");
    ASSERT_TRUE(t.waitForSummary(model, 1));
    EXPECT_FALSE(model.canUndo()) << "only a batch is offered";

    model.deleteSessionFiles({{kept, 3000, {}}, {t.tree / "home/gone.jsonl", 20, {}}}, "code.codex-sessions");
    ASSERT_TRUE(t.waitForSummary(model, 2));
    EXPECT_EQ(*model.lastSummary(), (ActionSummary{ActionSummary::Cleaned{3000, true, 1}}));
    ASSERT_TRUE(model.canUndo());
    EXPECT_FALSE(fs::exists(kept));

    model.undoLastClean();
    ASSERT_TRUE(waitUntil([&] { return !model.isUndoing() && t.log->scansSoFar().size() == 3; }));
    EXPECT_EQ(*model.lastSummary(), (ActionSummary{ActionSummary::Restored{3000, 0}}));
    EXPECT_EQ(readFile(kept), std::string(3000, 'k'));
    EXPECT_FALSE(fs::exists(single));
    EXPECT_EQ(t.log->scansSoFar().back(), (std::set<std::string>{"code.codex-sessions"}));
}

TEST(Worktrees, DiscoveryListsBecomeTheRuleResultAndRemovalUsesGit) {
    Tools t;
    const fs::path clean = t.tree / "wt/clean", risky = t.tree / "wt/risky";
    std::atomic<int> discoveries = 0;
    ModelServices services = t.services();
    services.discoverWorktrees = [&](const WorktreeDiscovery::UpdateCallback& onUpdate) {
        ++discoveries;
        onUpdate({worktree(clean, std::nullopt), worktree(risky, std::nullopt, 2)});
        onUpdate({worktree(risky, 7000, 2), worktree(clean, std::nullopt)});
    };
    AppModel model(services);
    SignalCount lists(model, &AppModel::worktreesChanged);
    model.loadWorktrees(false);
    ASSERT_TRUE(waitUntil([&] { return !model.isLoadingWorktrees(); }));
    EXPECT_EQ(lists.count, 2);
    const RuleScanResult* result = model.result("tool.codex-worktrees");
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(result->entries, (std::vector<ScanEntry>{{risky, 7000, {}}, {clean, 0, {}}}));
    model.loadWorktrees(false);
    settle();
    EXPECT_EQ(discoveries, 1);

    // git succeeds and nothing is left at the path: removed, without a rescan.
    model.removeWorktree(model.worktrees()->at(1));
    EXPECT_EQ(model.removingWorktreeID(), clean.string());
    model.removeWorktree(model.worktrees()->at(0));
    ASSERT_TRUE(waitUntil([&] { return model.lastSummary().has_value(); }));
    EXPECT_EQ(*model.lastSummary(), (ActionSummary{ActionSummary::WorktreeRemoved{"clean", 0}}));
    EXPECT_FALSE(model.removingWorktreeID());
    EXPECT_EQ(model.result("tool.codex-worktrees")->entries, (std::vector<ScanEntry>{{risky, 7000, {}}}));

    // git refuses: the list is read again.
    t.git.respond("*", "", 1);
    model.removeWorktree(model.worktrees()->at(0));
    ASSERT_TRUE(waitUntil([&] { return discoveries == 2 && !model.isLoadingWorktrees(); }));
    EXPECT_EQ(model.lastSummary()->text(), "删除 risky 失败(git worktree remove 报错)");
    const std::string parent = (t.tree / "wt/main").string();
    EXPECT_EQ(t.git.calls(), (std::vector<Args>{{"-C", parent, "worktree", "remove", clean.string()},
                                                {"-C", parent, "worktree", "remove", "--force", risky.string()}}));
    EXPECT_TRUE(t.log->scansSoFar().empty());
}

TEST(Docker, PruneAndItemDeleteSayWhatHappenedThenReloadAndRescan) {
    Tools t;
    t.daemonRuns();
    t.docker.respond("*", "Deleted Images:\nTotal reclaimed space: 1.2GB\n");
    t.docker.respond("rmi 0123456789ab", "Error: in use", 1);
    AppModel model(t.services());
    model.prune(DockerPruneTarget::images);
    EXPECT_EQ(model.pruningTarget(), DockerPruneTarget::images);
    model.prune(DockerPruneTarget::volumes);
    model.deleteDockerItem({DockerItem::Kind::image, "ubuntu", "", 10, "0123456789ab"});
    ASSERT_TRUE(t.waitForSummary(model, 1));
    EXPECT_EQ(*model.lastSummary(), (ActionSummary{ActionSummary::DockerPruned{DockerPruneTarget::images, "1.2GB"}}));
    EXPECT_EQ(model.lastSummary()->text(), "Docker " + title(DockerPruneTarget::images) + "已清理,释放 1.2GB");
    EXPECT_FALSE(model.pruningTarget());
    EXPECT_EQ(t.log->scansSoFar(), (std::vector<std::set<std::string>>{{"tool.orbstack"}}));
    ASSERT_TRUE(waitUntil([&] { return !model.isLoadingInventory(); }));

    model.deleteDockerItem({DockerItem::Kind::image, "ubuntu", "", 10, "0123456789ab"});
    ASSERT_TRUE(waitUntil([&] { return t.log->scansSoFar().size() == 2; }));
    EXPECT_EQ(model.lastSummary()->text(), "删除 ubuntu 失败(可能正在使用)");
    EXPECT_EQ(t.log->scansSoFar().back(), (std::set<std::string>{"tool.orbstack", "tool.docker"}));
    Args removeCall{"rmi", "0123456789ab"};
    const auto calls = t.docker.calls();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), removeCall), 1);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), Args{"image", "prune", "-af"}), 1);
}

TEST(Docker, WithoutTheDaemonPruneFailsAndAForcedLoadClearsTheInventory) {
    Tools t;
    AppModel model(t.services());
    model.prune(DockerPruneTarget::buildCache);
    ASSERT_TRUE(t.waitForSummary(model, 1));
    EXPECT_EQ(model.lastSummary()->text(),
              "清理" + title(DockerPruneTarget::buildCache) + "失败:daemon 未运行或命令出错");
    ASSERT_TRUE(waitUntil([&] { return !model.isLoadingInventory(); }));
    SignalCount inventory(model, &AppModel::dockerInventoryChanged);
    model.loadDockerInventory(true);
    ASSERT_TRUE(waitUntil([&] { return inventory.count == 1 && !model.isLoadingInventory(); }));
    EXPECT_FALSE(model.dockerInventory());
    EXPECT_TRUE(t.docker.calls().empty());
}

TEST(OrbStack, StartingPollsTheDaemonThenWaitsTwoSeconds) {
    using std::chrono::milliseconds;
    for (bool daemon : {true, false}) {
        SCOPED_TRACE(daemon);
        Tools t;
        if (daemon) t.daemonRuns();
        AppModel model(t.services());
        model.startOrbStack();
        EXPECT_TRUE(model.isStartingOrbStack());
        ASSERT_TRUE(waitUntil([&] { return !model.isStartingOrbStack(); }));
        std::vector<milliseconds> expected;
        for (int i = 0; i < (daemon ? 0 : 40); ++i) expected.push_back(milliseconds(1000));
        expected.push_back(milliseconds(2000));
        std::lock_guard guard(t.log->lock);
        EXPECT_EQ(t.log->sleeps, expected);
    }
}

TEST(OrbStack, APlainRescanWaitsForTheRefinementAndShowsDiskEntriesWithoutTheDaemon) {
    Tools t;
    AppModel model(t.services());
    const CleanRule orb = makeRule("tool.orbstack", Category::tool, SafetyLevel::reportOnly);
    const auto breakdown =
        makeResult(orb, {{"/h/.orbstack/data/docker/images", 500}, {"/h/.orbstack/data/docker/volumes", 100}});
    model.apply(breakdown);
    model.refineOrbStackIfNeeded(true); // only docker rows: no disk entries to refine
    EXPECT_FALSE(model.isRefiningOrbStack());

    SignalCount results(model, &AppModel::resultsChanged);
    model.apply(makeResult(orb, {{"/h/.orbstack/data/data.img.raw", 900}}));
    EXPECT_EQ(model.result("tool.orbstack")->entries, breakdown.entries);
    EXPECT_TRUE(model.isRefiningOrbStack());
    EXPECT_TRUE(model.pendingOrbStackDiskEntries());
    ASSERT_TRUE(waitUntil([&] { return !model.isRefiningOrbStack(); }));
    EXPECT_EQ(model.result("tool.orbstack")->entries,
              (std::vector<ScanEntry>{{"/h/.orbstack/data/data.img.raw", 900, {}}}));
    EXPECT_FALSE(model.pendingOrbStackDiskEntries());
    EXPECT_EQ(results.count, 1);

    // A result that is itself a breakdown replaces the old one straight away.
    model.apply(breakdown);
    model.apply(makeResult(orb, {{"/h/.orbstack/data/docker/images", 700}}));
    EXPECT_EQ(model.result("tool.orbstack")->totalSize(), 700);
    EXPECT_FALSE(model.isRefiningOrbStack());
}
