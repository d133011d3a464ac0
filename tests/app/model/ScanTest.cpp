// Full scans and rescans over real folders: what lands when, what the selection keeps, and the
// guards. Workers are held by gates, never by sleeping.

#include "ModelTestSupport.h"

#include "support/TempTree.h"

#include <QThread>

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <thread>

using namespace lumabroom;
using namespace lumabroom::test;

namespace {

// Two rules over a real tree: "a" finds two folders, "b" one.
struct Tree {
    TempTree tree;
    CleanRule a = makeRule("t.a", Category::packageManager, SafetyLevel::safe, {(tree / "a/*").string()});
    CleanRule b = makeRule("t.b", Category::tool, SafetyLevel::safe, {(tree / "b/*").string()});
    std::string a1 = tree.file("a/one/f", 5000).parent_path().string();
    std::string a2 = tree.file("a/two/f", 9000).parent_path().string();
    std::string b1 = tree.file("b/one/f", 3000).parent_path().string();
    std::shared_ptr<ServiceLog> log = std::make_shared<ServiceLog>();
};

} // namespace

TEST(Scan, DeliversEveryRuleThenEndsAfterDiscoveryAndPrunesTheSelection) {
    Tree t;
    Gate discoveryGate;
    ModelServices services = testServices({t.a, t.b}, t.log);
    services.discoverWorktrees = [&](const WorktreeDiscovery::UpdateCallback& onUpdate) {
        onUpdate({});
        discoveryGate.wait();
    };
    AppModel model(services);
    std::vector<int> progress;
    QObject::connect(&model, &AppModel::scannedRuleCountChanged, &model,
                     [&] { progress.push_back(model.scannedRuleCount()); });
    model.setSelectedEntryIDs({t.a1, "/gone"});

    model.scan();
    EXPECT_TRUE(model.isBusy());
    EXPECT_EQ(model.diskSpace(), (DiskSpace{"Disk", 1000, 400}));
    ASSERT_TRUE(waitUntil([&] { return model.scannedRuleCount() == 2; }));
    settle();
    // Both rules are in, discovery is not done: the last step waits, and so does the pruning.
    EXPECT_TRUE(model.isBusy());
    EXPECT_EQ(model.scanProgressText(), "2/3");
    EXPECT_EQ(model.selectedEntryIDs(), (AppModel::IDSet{"/gone", t.a1}));
    EXPECT_EQ(model.result("t.a")->entries.size(), 2u);
    EXPECT_EQ(model.selectedEntryCount(), 1);
    ASSERT_TRUE(model.result("tool.codex-worktrees"));
    EXPECT_TRUE(model.result("tool.codex-worktrees")->entries.empty());

    discoveryGate.open();
    ASSERT_TRUE(waitUntil([&] { return !model.isBusy(); }));
    EXPECT_EQ(progress, (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(model.selectedEntryIDs(), (AppModel::IDSet{t.a1}));
    EXPECT_EQ(model.totalBytes(), model.result("t.a")->totalSize() + model.result("t.b")->totalSize());
    EXPECT_EQ(model.result("t.b")->entries.at(0).url, t.b1);
}

TEST(Scan, ASecondScanWhileBusyChangesNothing) {
    Tree t;
    Gate scanGate;
    ModelServices services = testServices({t.a}, t.log);
    services.scan = [&, live = services.scan](const std::vector<CleanRule>& rules,
                                              const ModelServices::ResultSink& sink) {
        scanGate.wait();
        live(rules, sink);
    };
    AppModel model(services);
    SignalCount busy(model, &AppModel::isBusyChanged), disk(model, &AppModel::diskSpaceChanged);
    model.scan();
    model.scan();
    model.clean(CleanMethod::trash);
    settle();
    EXPECT_EQ(busy.count, 1);
    EXPECT_EQ(disk.count, 1);
    EXPECT_EQ(t.log->diskReads, 1);
    scanGate.open();
    ASSERT_TRUE(waitUntil([&] { return !model.isBusy(); }));
    EXPECT_EQ(model.scannedRuleCount(), 2);
}

TEST(Scan, AnEntryThatARescanNoLongerFindsLeavesTheSelectionOnlyAtItsEnd) {
    Tree t;
    Gate endGate;
    std::atomic<int> scans = 0;
    ModelServices services = testServices({t.a, t.b}, t.log);
    services.scan = [&, live = services.scan](const std::vector<CleanRule>& rules,
                                              const ModelServices::ResultSink& sink) {
        live(rules, sink);
        if (++scans == 2) endGate.wait();
    };
    AppModel model(services);
    model.scan();
    ASSERT_TRUE(waitUntil([&] { return !model.isBusy(); }));
    model.toggleRule(*model.result("t.a"));
    EXPECT_EQ(model.selectedBytes(), model.result("t.a")->totalSize());
    std::filesystem::remove_all(t.a2);

    model.rescanRules({"t.a"});
    ASSERT_TRUE(waitUntil([&] { return model.result("t.a")->entries.size() == 1; }));
    settle();
    EXPECT_EQ(model.selectedEntryIDs(), (AppModel::IDSet{t.a1, t.a2}));
    // The vanished entry counts only while its old result stands.
    EXPECT_EQ(model.selectedBytes(), model.result("t.a")->totalSize());
    EXPECT_EQ(model.selectedEntryCount(), 1);

    endGate.open();
    ASSERT_TRUE(waitUntil([&] { return model.selectedEntryIDs().size() == 1; }));
    EXPECT_EQ(model.selectedEntryIDs(), (AppModel::IDSet{t.a1}));
}

TEST(Rescan, ScansExactlyTheNamedRulesOfTheCatalogueAndLeavesTheProgressAlone) {
    Tree t;
    AppModel model(testServices({t.a, t.b}, t.log));
    SignalCount progress(model, &AppModel::scannedRuleCountChanged), busy(model, &AppModel::isBusyChanged);
    model.rescanRules({"tool.codex-worktrees", "not.a.rule"});
    model.rescanRules({"t.b", "tool.codex-worktrees"});
    ASSERT_TRUE(waitUntil([&] { return model.result("t.b") != nullptr; }));
    settle();
    EXPECT_EQ(t.log->scansSoFar(), (std::vector<std::set<std::string>>{{"t.b"}}));
    EXPECT_EQ(model.results().size(), 1u);
    EXPECT_EQ(progress.count, 0);
    EXPECT_EQ(busy.count, 0);
}

TEST(Scan, PruneSelectionKeepsIdsOfReportOnlyEntries) {
    auto log = std::make_shared<ServiceLog>();
    AppModel model(testServices({}, log));
    const CleanRule report = makeRule("r", Category::tool, SafetyLevel::reportOnly);
    model.apply(makeResult(report, {{"/r/1", 10}}));
    model.setSelectedEntryIDs({"/r/1", "/elsewhere"});
    model.pruneSelection();
    EXPECT_EQ(model.selectedEntryIDs(), (AppModel::IDSet{"/r/1"}));
}

TEST(Scan, ManyScansOfChangingPathsKeepTheSelectionRight) {
    auto log = std::make_shared<ServiceLog>();
    AppModel model(testServices({}, log));
    const CleanRule rule = makeRule("r", Category::tool, SafetyLevel::safe);
    const auto generation = [&](int g) {
        std::vector<std::pair<std::string, std::int64_t>> entries;
        for (int i = 0; i < 3000; ++i) entries.emplace_back("/g" + std::to_string(g) + "/" + std::to_string(i), 1);
        entries.emplace_back("/kept", 10);
        return makeResult(rule, entries);
    };
    model.apply(makeResult(makeRule("other", Category::code, SafetyLevel::safe), {{"/other", 100}}));
    for (int g = 0; g < 5; ++g) {
        model.apply(generation(g));
        model.toggleEntry(*model.result("r"), "/g" + std::to_string(g) + "/7");
        model.pruneSelection();
    }
    model.toggleEntry(*model.result("r"), "/kept");
    EXPECT_EQ(model.selectedEntryIDs(), (AppModel::IDSet{"/g4/7", "/kept"}));
    EXPECT_EQ(model.selectedBytes(), 11);
    EXPECT_EQ(model.selection(*model.result("other")), RuleSelection::none);
    model.toggleRule(*model.result("other"));
    EXPECT_EQ(model.selectedBytes(), 111);
    EXPECT_TRUE(model.isSelected("/other"));
    EXPECT_FALSE(model.isSelected("/g3/7"));
}

// A rescan's entries are matched to the old ones by place first and looked up only where that
// fails, so paths that moved, came twice, or were dropped must all keep their own selection.
TEST(Scan, ARescanKeepsEachPathsSelectionWhereverItMoved) {
    const CleanRule rule = makeRule("r", Category::tool, SafetyLevel::safe);
    struct Case {
        const char* name;
        std::vector<std::pair<std::string, std::int64_t>> entries;
        std::int64_t selectedCount;
        std::int64_t selectedBytes;
        std::int64_t selectedAfterToggle; // of the whole rule
    };
    const Case cases[] = {
        {"same", {{"/a", 1}, {"/b", 2}, {"/c", 4}, {"/d", 8}}, 2, 10, 4},
        {"shifted", {{"/x", 16}, {"/a", 1}, {"/b", 2}, {"/c", 4}, {"/d", 8}}, 2, 10, 5},
        {"shrunk and swapped", {{"/d", 8}, {"/b", 2}}, 2, 10, 0},
        {"grown, with a path twice", {{"/a", 1}, {"/b", 2}, {"/b", 2}, {"/e", 32}, {"/d", 8}, {"/f", 64}}, 3, 12, 6},
        {"all new", {{"/e", 32}, {"/f", 64}}, 0, 0, 2},
        {"empty", {}, 0, 0, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        AppModel model(testServices({}, std::make_shared<ServiceLog>()));
        model.apply(makeResult(rule, {{"/a", 1}, {"/b", 2}, {"/c", 4}, {"/d", 8}}));
        model.setSelectedEntryIDs({"/b", "/d"});
        model.apply(makeResult(rule, c.entries));
        EXPECT_EQ(model.selectedEntryCount(), c.selectedCount);
        EXPECT_EQ(model.selectedBytes(), c.selectedBytes);
        model.toggleRule(*model.result("r"));
        EXPECT_EQ(model.selectedEntryCount(), c.selectedAfterToggle);
    }
}

TEST(Lifetime, WorkThatEndsAfterTheModelIsGoneDropsItsOutcome) {
    Tree t;
    Gate gate;
    std::atomic<int> finished = 0;
    {
        ModelServices services = testServices({t.a}, t.log);
        services.scan = [&, live = services.scan](const std::vector<CleanRule>& rules,
                                                  const ModelServices::ResultSink& sink) {
            gate.wait();
            live(rules, sink);
            ++finished;
        };
        services.clean = [&, live = services.clean](const std::vector<ScanEntry>& entries, CleanMethod method) {
            gate.wait();
            ++finished;
            return live(entries, method);
        };
        AppModel model(services);
        model.apply(makeResult(t.a, {{t.a1, 5}}));
        model.toggleRule(model.results().front());
        model.clean(CleanMethod::delete_);
        model.rescanRules({"t.a"});
        settle();
    }
    gate.open();
    ASSERT_TRUE(waitUntil([&] { return finished == 2; }));
    settle(); // an outcome delivered to the freed model would crash here, or show under the sanitizers
    EXPECT_FALSE(std::filesystem::exists(t.a1));
}

#ifndef NDEBUG
TEST(ThreadCheck, AFieldWrittenOffTheModelsThreadAborts) {
    EXPECT_DEATH(
        {
            auto log = std::make_shared<ServiceLog>();
            AppModel model(testServices({}, log));
            std::thread([&] { model.setShowEmptyRules(true); }).join();
        },
        "own thread");
}
#endif
