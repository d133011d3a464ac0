// Selection and the bulk clean over real folders.

#include "ModelTestSupport.h"

#include "support/TempTree.h"
#include "text/Formatting.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {

// "t.a" (safe) finds a/one and a/two; "t.r" (report only) finds r/one and also a/one; "t.b" (safe)
// finds b/one.
struct Scanned {
    TempTree tree;
    std::string a1 = tree.file("a/one/f", 5000).parent_path().string();
    std::string a2 = tree.file("a/two/f", 9000).parent_path().string();
    std::string r1 = tree.file("r/one/f", 3000).parent_path().string();
    std::string b1 = tree.file("b/one/f", 1000).parent_path().string();
    std::shared_ptr<ServiceLog> log = std::make_shared<ServiceLog>();
    std::vector<CleanRule> rules{
        makeRule("t.a", Category::packageManager, SafetyLevel::safe, {(tree / "a/*").string()}),
        makeRule("t.r", Category::tool, SafetyLevel::reportOnly, {(tree / "r/*").string(), a1}),
        makeRule("t.b", Category::system, SafetyLevel::caution, {(tree / "b/*").string()}),
    };

    std::int64_t sizeOf(const std::string& ruleID, const std::string& path) const {
        for (const ScanEntry& e : model->result(ruleID)->entries)
            if (e.url == path) return e.size;
        return -1;
    }

    std::unique_ptr<AppModel> model;
    void start(ModelServices services) {
        model = std::make_unique<AppModel>(std::move(services));
        model->scan();
        ASSERT_TRUE(waitUntil([&] { return !model->isBusy(); }));
        std::lock_guard guard(log->lock);
        log->scans.clear();
    }
};

} // namespace

TEST(Clean, RemovesOnlySelectedEntriesOfCleanableRulesAndRescansTheRulesThatHeldThem) {
    Scanned s;
    s.start(testServices(s.rules, s.log));
    AppModel& model = *s.model;
    model.toggleEntry(*model.result("t.a"), s.a1);
    // An id of a report-only entry in the selection all the same: the clean skips it.
    model.setSelectedEntryIDs({s.a1, s.r1});
    const std::int64_t freed = s.sizeOf("t.a", s.a1);
    SignalCount busy(model, &AppModel::isBusyChanged);

    model.clean(CleanMethod::delete_);
    EXPECT_TRUE(model.isBusy());
    ASSERT_TRUE(waitUntil([&] { return model.lastSummary().has_value(); }));
    EXPECT_EQ(*model.lastSummary(), (ActionSummary{ActionSummary::Cleaned{freed, false, 0}}));
    EXPECT_EQ(model.lastSummary()->text(), "已清理 " + Formatting::bytes(freed));
    EXPECT_FALSE(fs::exists(s.a1));
    EXPECT_TRUE(fs::exists(s.r1));
    EXPECT_TRUE(fs::exists(s.a2));
    EXPECT_TRUE(model.selectedEntryIDs().empty());
    EXPECT_FALSE(model.isBusy());
    EXPECT_EQ(busy.count, 2);
    EXPECT_EQ(s.log->diskReads, 2);
    ASSERT_TRUE(waitUntil(
        [&] { return model.result("t.a")->entries.size() == 1 && model.result("t.r")->entries.size() == 1; }));
    settle();
    EXPECT_EQ(s.log->scansSoFar(), (std::vector<std::set<std::string>>{{"t.a", "t.r"}}));
}

TEST(Clean, NothingSelectedThatAResultHoldsChangesNothing) {
    Scanned s;
    s.start(testServices(s.rules, s.log));
    AppModel& model = *s.model;
    for (const AppModel::IDSet& ids : {AppModel::IDSet{}, AppModel::IDSet{"/nowhere"}, AppModel::IDSet{s.r1}}) {
        SCOPED_TRACE(ids.empty() ? "" : *ids.begin());
        model.setSelectedEntryIDs(ids);
        SignalCount busy(model, &AppModel::isBusyChanged);
        model.clean(CleanMethod::trash);
        settle();
        EXPECT_EQ(busy.count, 0);
        EXPECT_FALSE(model.lastSummary());
        EXPECT_EQ(model.selectedEntryIDs(), ids);
    }
    EXPECT_TRUE(s.log->scansSoFar().empty());
}

TEST(Clean, AnEntryThatVanishedCountsAsAFailureAndLeavesTheSelection) {
    Scanned s;
    s.start(testServices(s.rules, s.log));
    AppModel& model = *s.model;
    model.toggleEntry(*model.result("t.b"), s.b1);
    fs::remove_all(s.b1);
    model.clean(CleanMethod::trash);
    ASSERT_TRUE(waitUntil([&] { return model.lastSummary().has_value(); }));
    EXPECT_EQ(*model.lastSummary(), (ActionSummary{ActionSummary::Cleaned{0, true, 1}}));
    EXPECT_EQ(model.lastSummary()->text(), "已清理 " + Formatting::bytes(0) + ",清空废纸篓后释放,1 项失败");
    EXPECT_TRUE(model.selectedEntryIDs().empty());
    EXPECT_TRUE(fs::exists(s.a1));
}

TEST(Clean, ASecondCleanOrScanWhileBusyIsRefused) {
    Scanned s;
    Gate cleanGate;
    ModelServices services = testServices(s.rules, s.log);
    services.clean = [&, live = services.clean](const std::vector<ScanEntry>& entries, CleanMethod method) {
        cleanGate.wait();
        return live(entries, method);
    };
    s.start(services);
    AppModel& model = *s.model;
    model.toggleRule(*model.result("t.a"));
    model.clean(CleanMethod::delete_);
    SignalCount busy(model, &AppModel::isBusyChanged), progress(model, &AppModel::scannedRuleCountChanged);
    model.clean(CleanMethod::delete_);
    model.scan();
    model.prune(DockerPruneTarget::images);
    model.runMaintenance({"t.a", "true", ""});
    settle();
    EXPECT_EQ(busy.count, 0);
    EXPECT_EQ(progress.count, 0);
    EXPECT_FALSE(model.pruningTarget());
    EXPECT_FALSE(model.runningCommandRuleID());
    EXPECT_TRUE(s.log->scansSoFar().empty());
    cleanGate.open();
    ASSERT_TRUE(waitUntil([&] { return model.lastSummary().has_value() && !model.isBusy(); }));
    EXPECT_FALSE(fs::exists(s.a2));
}

TEST(Selection, TogglesOfRulesAndEntries) {
    Scanned s;
    s.start(testServices(s.rules, s.log));
    AppModel& model = *s.model;
    const RuleScanResult& a = *model.result("t.a");
    model.toggleEntry(a, s.a2);
    EXPECT_EQ(model.selection(a), RuleSelection::partial);
    model.toggleRule(a);
    EXPECT_EQ(model.selection(a), RuleSelection::all);
    EXPECT_EQ(model.selectedEntryIDs(), (AppModel::IDSet{s.a1, s.a2}));
    // "a/one" stands in the report-only rule too: selected there as well.
    EXPECT_EQ(model.selection(*model.result("t.r")), RuleSelection::partial);
    model.toggleRule(a);
    EXPECT_TRUE(model.selectedEntryIDs().empty());

    SignalCount selection(model, &AppModel::selectedEntryIDsChanged);
    model.toggleRule(*model.result("t.r"));
    model.toggleEntry(*model.result("t.r"), s.r1);
    model.toggleRule(makeResult(s.rules[0], {}));
    EXPECT_EQ(selection.count, 0);
    EXPECT_TRUE(model.selectedEntryIDs().empty());
}

namespace {
// A tree whose Trash is its own.
struct ScannedWithTrash : Scanned {
    ScopedEnv home{{"HOME", tree.dir("home").string()}, {"XDG_DATA_HOME", (tree / "home/.local/share").string()}};
    fs::path trash = tree / "home/.local/share/Trash";

    long trashed() const { return fs::exists(trash) ? std::distance(fs::directory_iterator(trash / "files"), {}) : 0; }
};
} // namespace

TEST(Undo, IsOfferedAfterACleanThatMovedSomethingToTheTrashUntilTheNextSummary) {
    ScannedWithTrash s;
    s.start(testServices(s.rules, s.log));
    AppModel& model = *s.model;
    SignalCount offered(model, &AppModel::canUndoChanged);
    const auto cleanOf = [&](const std::string& path, CleanMethod method) {
        model.setSelectedEntryIDs({path});
        model.clean(method);
        EXPECT_TRUE(waitUntil([&] { return !model.isBusy(); }));
    };

    cleanOf(s.a2, CleanMethod::delete_);
    EXPECT_FALSE(model.canUndo()) << "after a delete";
    fs::remove_all(s.b1);
    cleanOf(s.b1, CleanMethod::trash);
    EXPECT_EQ(*model.lastSummary(), (ActionSummary{ActionSummary::Cleaned{0, true, 1}}));
    EXPECT_FALSE(model.canUndo()) << "after a clean to the Trash that moved nothing";
    EXPECT_EQ(offered.count, 0);

    cleanOf(s.a1, CleanMethod::trash);
    EXPECT_TRUE(model.canUndo());
    EXPECT_EQ(offered.count, 1);
    model.scan();
    ASSERT_TRUE(waitUntil([&] { return !model.isBusy(); }));
    EXPECT_TRUE(model.canUndo()) << "a scan sets no summary";

    model.deleteSessionFiles({{s.tree / "gone.jsonl", 10, {}}}, "code.codex-sessions");
    ASSERT_TRUE(waitUntil([&] { return !model.canUndo(); }));
    EXPECT_EQ(*model.lastSummary(), (ActionSummary{ActionSummary::Cleaned{0, true, 1}}));
    EXPECT_EQ(offered.count, 2);
    model.undoLastClean();
    settle();
    EXPECT_FALSE(fs::exists(s.a1));
    EXPECT_EQ(s.trashed(), 1);
}

TEST(Undo, PutsBackWhatTheCleanMovedAndRescansTheRulesThatHeldIt) {
    ScannedWithTrash s;
    s.start(testServices(s.rules, s.log));
    AppModel& model = *s.model;
    model.setSelectedEntryIDs({s.a1, s.a2, "/nowhere"});
    const std::int64_t a1Bytes = s.sizeOf("t.a", s.a1);
    model.clean(CleanMethod::trash);
    ASSERT_TRUE(waitUntil([&] { return !model.isBusy(); }));
    ASSERT_TRUE(model.canUndo());
    EXPECT_EQ(s.trashed(), 2);
    writeText(s.a2 + "/f", "taken meanwhile");
    ASSERT_TRUE(waitUntil([&] { return s.log->scansSoFar().size() == 1; }));
    settle();
    {
        std::lock_guard guard(s.log->lock);
        s.log->scans.clear();
    }

    SignalCount undoing(model, &AppModel::isUndoingChanged);
    model.undoLastClean();
    EXPECT_TRUE(model.isUndoing());
    EXPECT_FALSE(model.canUndo());
    ASSERT_TRUE(waitUntil([&] { return !model.isUndoing(); }));
    EXPECT_EQ(undoing.count, 2);
    EXPECT_EQ(*model.lastSummary(), (ActionSummary{ActionSummary::Restored{a1Bytes, 1}}));
    EXPECT_EQ(model.lastSummary()->text(), "已恢复 " + Formatting::bytes(a1Bytes) + ",1 项未能恢复");
    EXPECT_EQ(readFile(s.a1 + "/f"), std::string(5000, 'x'));
    EXPECT_EQ(readFile(s.a2 + "/f"), "taken meanwhile");
    EXPECT_EQ(s.trashed(), 1) << "what could not go back stays in the Trash";
    ASSERT_TRUE(waitUntil([&] { return s.log->scansSoFar().size() == 1; }));
    settle();
    // a/one stands in the report-only rule too; t.b held nothing that was cleaned.
    EXPECT_EQ(s.log->scansSoFar(), (std::vector<std::set<std::string>>{{"t.a", "t.r"}}));
}

TEST(Undo, IsRefusedWhileAScanOrCleanRunsAndRunsOneAtATime) {
    ScannedWithTrash s;
    Gate scanGate, restoreGate;
    std::atomic<bool> holdScans{false};
    std::atomic<int> restores{0};
    ModelServices services = testServices(s.rules, s.log);
    services.scan = [&, live = services.scan](const std::vector<CleanRule>& rules,
                                              const ModelServices::ResultSink& sink) {
        if (holdScans) scanGate.wait();
        live(rules, sink);
    };
    services.restore = [&, live = services.restore](const Trash::TrashedItem& item) {
        ++restores;
        restoreGate.wait();
        return live(item);
    };
    s.start(services);
    AppModel& model = *s.model;
    model.setSelectedEntryIDs({s.b1});
    model.clean(CleanMethod::trash);
    ASSERT_TRUE(waitUntil([&] { return !model.isBusy() && s.log->scansSoFar().size() == 1; }));
    settle();
    ASSERT_TRUE(model.canUndo());

    holdScans = true;
    model.scan();
    ASSERT_TRUE(model.isBusy());
    SignalCount undoing(model, &AppModel::isUndoingChanged);
    model.undoLastClean();
    EXPECT_EQ(undoing.count, 0);
    EXPECT_TRUE(model.canUndo());
    scanGate.open();
    ASSERT_TRUE(waitUntil([&] { return !model.isBusy(); }));

    model.undoLastClean();
    EXPECT_TRUE(model.isUndoing());
    model.undoLastClean();
    restoreGate.open();
    ASSERT_TRUE(waitUntil([&] { return !model.isUndoing(); }));
    settle();
    EXPECT_EQ(undoing.count, 2);
    EXPECT_EQ(restores, 1);
    EXPECT_EQ(*model.lastSummary(), (ActionSummary{ActionSummary::Restored{s.sizeOf("t.b", s.b1), 0}}));
    EXPECT_TRUE(fs::exists(s.b1 + "/f"));
}
