#include "scan/CacheScanner.h"
#include "scan/WorkerPool.h"

#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <future>
#include <map>

using namespace lumabroom;
using lumabroom::test::allocatedBytes;
using lumabroom::test::TempTree;
namespace fs = std::filesystem;

namespace {
CleanRule rule(std::string id, std::vector<std::string> paths, bool exclusive = false) {
    return CleanRule{std::move(id), "名", "注", Category::system, std::move(paths), SafetyLevel::safe, exclusive};
}

std::vector<RuleScanResult> drain(ScanStream& stream) {
    std::vector<RuleScanResult> out;
    while (auto r = stream.next()) out.push_back(std::move(*r));
    return out;
}
} // namespace

TEST(CacheScanner, DeliversExactlyOneResultPerRuleGivenAndThenEnds) {
    TempTree t;
    t.file("a/x", 5000);
    t.file("b/y", 9000);
    std::vector<CleanRule> rules;
    for (int i = 0; i < 60; ++i)
        rules.push_back(rule(std::to_string(i % 30), {(t / (i % 2 ? "a" : "b")).string(), (t / "none").string()}));
    auto stream = CacheScanner::scan(rules, {});
    auto results = drain(stream);
    std::map<std::string, int> count;
    for (const auto& r : results) {
        ++count[r.rule.id];
        ASSERT_EQ(r.entries.size(), 1u);
    }
    EXPECT_EQ(results.size(), 60u);
    for (int i = 0; i < 30; ++i) EXPECT_EQ(count[std::to_string(i)], 2);
    EXPECT_EQ(stream.next(), std::nullopt);
}

TEST(CacheScanner, EmptyRuleListEndsAtOnce) {
    auto stream = CacheScanner::scan({}, {});
    EXPECT_EQ(stream.next(), std::nullopt);
}

TEST(CacheScanner, PlainRouteSortsLargestFirstAndKeepsPatternOrderForTies) {
    TempTree t;
    auto big = t.file("big", 40'000);
    t.file("tie1", 4096);
    t.file("tie2", 4096);
    t.file("tie3", 4096);
    t.dir("zero");
    auto r = CacheScanner::scanRule(rule("x", {(t / "zero").string(), (t / "tie2").string(), (t / "tie1").string(),
                                                (t / "big").string(), (t / "tie3").string(), (t / "absent").string()}),
                                    {});
    std::vector<std::string> order;
    for (const auto& e : r.entries) order.push_back(e.url.filename().string());
    EXPECT_EQ(order, (std::vector<std::string>{"big", "tie2", "tie1", "tie3", "zero"}));
    EXPECT_EQ(r.entries[0].size, allocatedBytes(big));
    EXPECT_EQ(r.entries.back().size, 0);
    EXPECT_EQ(r.totalSize(), allocatedBytes(big) + 3 * allocatedBytes(t / "tie1"));
}

TEST(CacheScanner, RuleWithoutPathsStillArrivesEmpty) {
    auto stream = CacheScanner::scan({rule("empty", {})}, {});
    auto results = drain(stream);
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(results[0].id(), "empty");
    EXPECT_TRUE(results[0].entries.empty());
    EXPECT_EQ(results[0].totalSize(), 0);
}

TEST(CacheScanner, ExclusiveSizeOnlyReachesTheSizer) {
    TempTree t;
    auto solo = t.file("store/solo", 9000);
    t.file("store/shared", 9000);
    t.hardlink("project/shared", "store/shared");
    EXPECT_EQ(CacheScanner::scanRule(rule("p", {(t / "store").string()}, true), {}).totalSize(), allocatedBytes(solo));
    EXPECT_EQ(CacheScanner::scanRule(rule("p", {(t / "store").string()}, false), {}).totalSize(), 2 * allocatedBytes(solo));
}

TEST(CacheScanner, OwnRouteWinsAndAnEmptyAnswerFallsBackToPatterns) {
    TempTree t;
    t.file("plain/f", 4096);
    RouteTable routes{
        {"own", [] { return std::optional<std::vector<ScanEntry>>({ScanEntry{"/made/up", 7, EntryLabel{LiteralLabel{"x"}}},
                                                                   ScanEntry{"/made/bigger", 70, std::nullopt}}); }},
        {"fallback", [] { return std::optional<std::vector<ScanEntry>>(); }},
    };
    auto own = CacheScanner::scanRule(rule("own", {(t / "plain").string()}), routes);
    ASSERT_EQ(own.entries.size(), 2u);
    EXPECT_EQ(own.entries[0].url, "/made/up") << "a route's list keeps its own order";
    auto fallback = CacheScanner::scanRule(rule("fallback", {(t / "plain").string()}), routes);
    ASSERT_EQ(fallback.entries.size(), 1u);
    EXPECT_EQ(fallback.entries[0].url, t / "plain");
}

TEST(CacheScanner, CancelEndsTheStreamAtOnceAndNothingArrivesAfter) {
    std::promise<void> release;
    std::shared_future<void> released = release.get_future().share();
    std::promise<void> started;
    std::promise<bool> sawCancel;
    RouteTable routes{
        {"slow", [&, released] {
             started.set_value();
             // Stands for a walk under way: it must see the scan's cancellation.
             bool seen = false;
             for (int i = 0; i < 5000 && !(seen = Cancellation::isCancelled()); ++i)
                 std::this_thread::sleep_for(std::chrono::milliseconds(1));
             sawCancel.set_value(seen);
             released.wait();
             return std::optional<std::vector<ScanEntry>>(std::vector<ScanEntry>{});
         }},
    };
    auto cancelSeen = sawCancel.get_future();
    auto stream = CacheScanner::scan({rule("slow", {})}, routes);
    started.get_future().wait();
    stream.cancel();
    EXPECT_EQ(stream.next(), std::nullopt);
    EXPECT_TRUE(cancelSeen.get());
    release.set_value();
    EXPECT_EQ(stream.next(), std::nullopt);
}

TEST(CacheScanner, DroppingTheStreamCancelsTheScan) {
    TempTree t;
    for (int i = 0; i < 50; ++i) t.file("tree/d" + std::to_string(i) + "/f", 100);
    std::vector<CleanRule> rules(200, rule("r", {(t / "tree").string()}));
    { auto stream = CacheScanner::scan(rules, {}); }
    auto next = CacheScanner::scan({rule("after", {})}, {});
    auto results = drain(next);
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(results[0].id(), "after");
}
