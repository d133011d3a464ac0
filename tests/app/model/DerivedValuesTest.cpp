// The values the window reads per frame, the notifications of the fields, and the names of entries.

#include "DisplayName.h"
#include "ModelTestSupport.h"

#include "support/TempTree.h"
#include "text/Formatting.h"

#include <gtest/gtest.h>

using namespace lumabroom;
using namespace lumabroom::test;

namespace {

const CleanRule xcodeA = makeRule("x.a", Category::xcode, SafetyLevel::safe);
const CleanRule xcodeB = makeRule("x.b", Category::xcode, SafetyLevel::caution);
const CleanRule xcodeEmpty = makeRule("x.empty", Category::xcode, SafetyLevel::safe);
const CleanRule toolReport = makeRule("t.report", Category::tool, SafetyLevel::reportOnly);
const CleanRule codeOnlyEmpty = makeRule("c.empty", Category::code, SafetyLevel::safe);

std::vector<std::string> idsOf(const VisibleGroup& group) {
    std::vector<std::string> ids;
    for (const RuleScanResult* result : group.results) ids.push_back(result->rule.id);
    return ids;
}

// A model with results of two categories: equal totals in xcode, a report-only rule in tool, and
// one path that stands in two rules.
struct Filled {
    std::shared_ptr<ServiceLog> log = std::make_shared<ServiceLog>();
    AppModel model{testServices({xcodeA, xcodeB}, log)};
    Filled() {
        model.apply(makeResult(xcodeA, {{"/a/1", 100}, {"/shared", 50}}));
        model.apply(makeResult(xcodeEmpty, {}));
        model.apply(makeResult(xcodeB, {{"/b/1", 150}}));
        model.apply(makeResult(toolReport, {{"/shared", 50}, {"/r/1", 1000}}));
        model.apply(makeResult(codeOnlyEmpty, {{"/c/zero", 0}}));
    }
};

} // namespace

TEST(DerivedValues, StartValues) {
    auto log = std::make_shared<ServiceLog>();
    AppModel model(testServices({xcodeA, xcodeB}, log));
    EXPECT_EQ(model.totalBytes(), 0);
    EXPECT_TRUE(model.visibleGroups().empty());
    EXPECT_EQ(model.scanProgressText(), "0/3");
    EXPECT_EQ(model.route(), Route::overview());
    EXPECT_EQ(model.collapsedCategories(), AppModel::CategorySet(allCategories.begin(), allCategories.end()));
    EXPECT_FALSE(model.diskSpace());
    EXPECT_FALSE(model.worktrees());
    EXPECT_FALSE(model.lastSummary());
}

TEST(DerivedValues, TotalsCountReportOnlyRulesExceptInTheDirectlyCleanableBytes) {
    Filled f;
    EXPECT_EQ(f.model.totalBytes(), 1350);
    EXPECT_EQ(f.model.directlyCleanableBytes(), 300);
    EXPECT_EQ(f.model.categoryBytes(Category::xcode), 300);
    EXPECT_EQ(f.model.categoryBytes(Category::tool), 1050);
    EXPECT_EQ(f.model.categoryBytes(Category::system), 0);
    ASSERT_NE(f.model.result("t.report"), nullptr);
    EXPECT_EQ(f.model.result("t.report")->entries.size(), 2u);
    EXPECT_EQ(f.model.result("nope"), nullptr);
}

TEST(DerivedValues, VisibleGroupsHideEmptyRulesAndKeepEqualTotalsInArrivalOrder) {
    Filled f;
    auto groups = f.model.visibleGroups();
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(groups[0].category, Category::xcode);
    EXPECT_EQ(idsOf(groups[0]), (std::vector<std::string>{"x.a", "x.b"}));
    EXPECT_EQ(groups[0].total(), 300);
    EXPECT_EQ(groups[1].category, Category::tool);

    f.model.setShowEmptyRules(true);
    groups = f.model.visibleGroups();
    ASSERT_EQ(groups.size(), 3u);
    EXPECT_EQ(idsOf(groups[0]), (std::vector<std::string>{"x.a", "x.b", "x.empty"}));
    EXPECT_EQ(groups[2].category, Category::code);
    EXPECT_EQ(groups[2].total(), 0);
}

TEST(DerivedValues, GroupSummaryNamesUpToThreeSizedRulesAndCountsTheRest) {
    const auto rule = [](const char* id) { return makeRule(id, Category::system, SafetyLevel::safe); };
    const std::vector<RuleScanResult> five{
        makeResult(rule("s.1"), {{"/1", 5000}}), makeResult(rule("s.2"), {{"/2", 4000}}),
        makeResult(rule("s.3"), {{"/3", 3000}}), makeResult(rule("s.4"), {{"/4", 2000}}),
        makeResult(rule("s.5"), {{"/5", 1000}})};
    const RuleScanResult zero = makeResult(rule("s.0"), {});
    const auto group = [](std::vector<const RuleScanResult*> results) {
        return VisibleGroup{Category::system, results, {}};
    };
    const std::string kb5 = "s.1 " + Formatting::bytes(5000), kb4 = "s.2 " + Formatting::bytes(4000),
                      kb3 = "s.3 " + Formatting::bytes(3000);
    struct Case {
        const char* name;
        VisibleGroup group;
        std::string summary;
    } cases[] = {
        {"five", group({&five[0], &five[1], &five[2], &five[3], &five[4]}),
         kb5 + " · " + kb4 + " · " + kb3 + " · 其余 2 项"},
        {"two", group({&five[0], &five[1]}), kb5 + " · " + kb4},
        {"empty first", group({&zero, &five[0], &five[1]}), kb5 + " · " + kb4 + " · 其余 1 项"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.group.summary(), c.summary);
    }
}

TEST(DerivedValues, SelectionCountsEveryResultThatHoldsAPathAndIgnoresUnknownIds) {
    Filled f;
    f.model.setSelectedEntryIDs({"/shared", "/b/1", "/unknown"});
    EXPECT_EQ(f.model.selectedBytes(), 250); // "/shared" counts in both rules
    EXPECT_EQ(f.model.selectedEntryCount(), 3);
    EXPECT_EQ(f.model.selection(*f.model.result("x.a")), RuleSelection::partial);
    EXPECT_EQ(f.model.selection(*f.model.result("x.b")), RuleSelection::all);
    EXPECT_EQ(f.model.selection(*f.model.result("x.empty")), RuleSelection::none);
    EXPECT_EQ(f.model.selection(*f.model.result("c.empty")), RuleSelection::none);
    // A copy of a result is judged like the model's own.
    const RuleScanResult copy = *f.model.result("x.b");
    EXPECT_EQ(f.model.selection(copy), RuleSelection::all);
    EXPECT_EQ(f.model.selectedEntryIDs(), (AppModel::IDSet{"/b/1", "/shared", "/unknown"}));
}

TEST(DerivedValues, EqualAssignmentsNotifyNobodyButResultsAlwaysNotify) {
    Filled f;
    SignalCount route(f.model, &AppModel::routeChanged), empty(f.model, &AppModel::showEmptyRulesChanged),
        selection(f.model, &AppModel::selectedEntryIDsChanged), results(f.model, &AppModel::resultsChanged),
        collapsed(f.model, &AppModel::collapsedCategoriesChanged);
    f.model.setRoute(Route::rule("x.a"));
    f.model.setRoute(Route::rule("x.a"));
    f.model.setRoute(Route::rule("x.b"));
    f.model.setShowEmptyRules(false);
    f.model.setSelectedEntryIDs({});
    f.model.setSelectedEntryIDs({"/a/1"});
    f.model.setSelectedEntryIDs({"/a/1"});
    f.model.apply(*f.model.result("x.a"));
    f.model.apply(*f.model.result("x.a"));
    f.model.toggleExpansion(Category::code);
    f.model.toggleExpansion(Category::code);
    EXPECT_EQ(route.count, 2);
    EXPECT_EQ(empty.count, 0);
    EXPECT_EQ(selection.count, 1);
    EXPECT_EQ(results.count, 2);
    EXPECT_EQ(collapsed.count, 2);
    EXPECT_EQ(f.model.collapsedCategories().size(), allCategories.size());
}

TEST(DerivedValues, ApplyReplacesInPlaceAndAppendsNewRules) {
    Filled f;
    f.model.apply(makeResult(xcodeA, {{"/a/2", 7}}));
    std::vector<std::string> order;
    for (const RuleScanResult& r : f.model.results()) order.push_back(r.rule.id);
    EXPECT_EQ(order, (std::vector<std::string>{"x.a", "x.empty", "x.b", "t.report", "c.empty"}));
    EXPECT_EQ(f.model.result("x.a")->totalSize(), 7);
    EXPECT_EQ(f.model.categoryBytes(Category::xcode), 157);
}

TEST(DisplayName, PicksTheFirstRuleThatApplies) {
    TempTree tree;
    const std::string simulator = (tree / "CoreSimulator/Devices/0A1B2C3D-0000-1111-2222-333344445555").string();
    tree.dir("CoreSimulator/Devices/0A1B2C3D-0000-1111-2222-333344445555");
    struct Case {
        std::string path;
        std::optional<EntryLabel> label;
        std::string name;
    } cases[] = {
        {"/b/my-app-abcdefghijklmnopqrst", {}, "my-app"},
        {"/b/my-app-abcdefghijklmnopqrs", {}, "my-app-abcdefghijklmnopqrs"}, // 19 characters
        {"/b/my-app-abcdefghijklmnopqrsT", {}, "my-app-abcdefghijklmnopqrsT"},
        {"/b/my-app-abcdefghij_lmnopqrst", {}, "my-app-abcdefghij_lmnopqrst"},
        {"/b/plain", {}, "plain"},
        {"/b/x-0123456789abcdef0123", EntryLabel{LiteralLabel{"Label"}}, "Label"},
        {"/h/.ollama/models/manifests/registry.ollama.ai/library/llama3/8b", {}, "llama3:8b"},
        {"/h/.ollama/models/manifests/registry.ollama.ai/alice/llama3/8b", {}, "alice/llama3:8b"},
        {"/h/.orbstack/data/data.img.raw", {}, "虚拟磁盘镜像 · 启动 OrbStack 后重扫可细分"},
        {"/h/.codex/sessions/2025/06/rollout-1.jsonl", {}, "06-rollout-1.jsonl"},
        // No readable device file: the later rules name it.
        {simulator, {}, "0A1B2C3D-0000-1111-2222-333344445555"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(displayName(ScanEntry{c.path, 1, c.label}), c.name);
    }
}
