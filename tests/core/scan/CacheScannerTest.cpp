#include "scan/CacheScanner.h"

#include "concurrency/Cancellation.h"
#include "concurrency/WorkerPool.h"
#include "host/DirectoryReader.h"

#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <map>
#include <thread>

using namespace lumabroom;
using lumabroom::test::allocatedBytes;
using lumabroom::test::TempTree;
namespace fs = std::filesystem;

namespace {
CleanRule rule(std::string id, std::vector<std::string> paths) {
    return CleanRule{std::move(id), "名", "注", Category::system, std::move(paths), SafetyLevel::safe, false};
}
} // namespace

TEST(CacheScanner, StreamDeliversEveryRuleGivenOnceEvenWithoutPathsAndThenEnds) {
    TempTree t;
    t.file("a/x", 5000);
    // Each id twice; every third rule has no paths and must still arrive, empty.
    std::vector<CleanRule> rules;
    for (int i = 0; i < 60; ++i)
        rules.push_back(rule(std::to_string(i % 30), i % 3 ? std::vector{(t / "a").string(), (t / "none").string()}
                                                           : std::vector<std::string>{}));
    auto stream = CacheScanner::scan(rules, {});
    std::map<std::string, std::vector<std::size_t>> entryCounts;
    while (auto r = stream.next()) entryCounts[r->id()].push_back(r->entries.size());
    ASSERT_EQ(entryCounts.size(), 30u);
    for (int id = 0; id < 30; ++id)
        EXPECT_EQ(entryCounts[std::to_string(id)], std::vector<std::size_t>(2, id % 3 ? 1 : 0)) << id;
    EXPECT_EQ(stream.next(), std::nullopt);
    EXPECT_EQ(CacheScanner::scan({}, {}).next(), std::nullopt);
}

TEST(CacheScanner, RuleTakesItsOwnRouteElseItsPatternsSortedLargestFirstKeepingPatternOrderForTies) {
    TempTree t;
    auto big = t.file("big", 40'000);
    t.dir("zero");
    // More ties than a sort handles by insertion, in an order that is not the names'.
    std::vector<std::string> patterns{(t / "zero").string()};
    for (int i = 0; i < 24; ++i) patterns.push_back(t.file("tie" + std::to_string(i * 7 % 24), 4096).string());
    for (const char* name : {"big", "absent"}) patterns.push_back((t / name).string());
    // A route's list keeps its own order; a route without an answer falls back to the patterns.
    const std::vector<ScanEntry> own{{"/made/up", 7, EntryLabel{LiteralLabel{"x"}}},
                                     {"/made/bigger", 70, std::nullopt}};
    RouteTable routes{{"own", [&] { return std::optional(own); }},
                      {"fallback", [] { return std::optional<std::vector<ScanEntry>>(); }}};
    EXPECT_EQ(CacheScanner::scanRule(rule("own", patterns), routes).entries, own);
    auto r = CacheScanner::scanRule(rule("fallback", patterns), routes);
    std::vector<std::pair<std::string, std::int64_t>> entries, expected{{"big", allocatedBytes(big)}};
    for (const auto& e : r.entries) entries.emplace_back(e.url.filename().string(), e.size);
    const std::int64_t tie = allocatedBytes(t / "tie0");
    for (std::size_t i = 1; i <= 24; ++i) expected.emplace_back(fs::path(patterns[i]).filename().string(), tie);
    expected.emplace_back("zero", 0);
    EXPECT_EQ(entries, expected);
}

TEST(CacheScanner, CancelEndsTheStreamAtOnceAndNothingArrivesAfter) {
    std::promise<void> started, release;
    std::promise<bool> sawCancel;
    // Stands for a walk under way: it must see the scan's cancellation.
    RouteTable routes{{"slow", [&, released = release.get_future().share()] {
                           started.set_value();
                           released.wait();
                           sawCancel.set_value(Cancellation::isCancelled());
                           return std::optional(std::vector<ScanEntry>{});
                       }}};
    auto stream = CacheScanner::scan({rule("slow", {})}, routes);
    started.get_future().wait();
    stream.cancel();
    EXPECT_EQ(stream.next(), std::nullopt);
    release.set_value();
    EXPECT_TRUE(sawCancel.get_future().get());
    EXPECT_EQ(stream.next(), std::nullopt);
}

TEST(CacheScanner, EachEntryRecordsTheIdentityOfTheItemItselfButShowsAndComparesWithoutIt) {
    TempTree t;
    const auto folder = t.dir("folder"), file = t.file("file", 10), link = t.symlink("link", t / "folder");
    auto r = CacheScanner::scanRule(rule("r", {folder.string(), file.string(), link.string()}), {});
    ASSERT_EQ(r.entries.size(), 3u);
    for (const auto& entry : r.entries) {
        SCOPED_TRACE(entry.url);
        EXPECT_EQ(entry.identity, identityOf(entry.url.string()));
        ScanEntry without = entry;
        without.identity.reset();
        EXPECT_EQ(without, entry);
        EXPECT_EQ(std::hash<ScanEntry>{}(without), std::hash<ScanEntry>{}(entry));
    }
    EXPECT_NE(identityOf(link.string()), identityOf(folder.string())) << "a link is recorded as itself";
}

TEST(CacheScanner, PushedScanHandsEveryRuleOnceOneCallAtATimeThenEndsOnce) {
    TempTree t;
    t.file("a/x", 5000);
    std::vector<CleanRule> rules;
    for (int i = 0; i < 40; ++i)
        rules.push_back(rule(std::to_string(i), i % 2 ? std::vector{(t / "a").string()} : std::vector<std::string>{}));
    std::atomic<int> inCallback{0}, overlaps{0};
    std::map<std::string, std::size_t> entryCounts;
    std::promise<std::size_t> ended;
    auto stream = CacheScanner::scan(
        rules, {},
        [&](RuleScanResult r) {
            if (inCallback.fetch_add(1) != 0) overlaps.fetch_add(1);
            entryCounts.emplace(r.id(), r.entries.size());
            inCallback.fetch_sub(1);
        },
        [&] { ended.set_value(entryCounts.size()); });
    EXPECT_EQ(ended.get_future().get(), 40u) << "the end comes after every result";
    EXPECT_EQ(overlaps.load(), 0);
    for (int i = 0; i < 40; ++i) EXPECT_EQ(entryCounts[std::to_string(i)], i % 2 ? 1u : 0u) << i;
    EXPECT_EQ(stream.next(), std::nullopt);

    std::promise<void> emptyEnded;
    auto none = CacheScanner::scan({}, {}, nullptr, [&] { emptyEnded.set_value(); });
    EXPECT_EQ(emptyEnded.get_future().wait_for(std::chrono::seconds(0)), std::future_status::ready);
}

TEST(CacheScanner, PushedScanCancelledFromItsCallbackOrOutsideCallsNothingMore) {
    // Cancelled from inside the first callback: no second result, no end.
    std::vector<CleanRule> rules;
    for (int i = 0; i < 30; ++i) rules.push_back(rule(std::to_string(i), {}));
    std::atomic<int> results{0}, ends{0};
    std::optional<ScanStream> stream;
    std::promise<void> first, held;
    stream = CacheScanner::scan(
        rules, {},
        [&, streamHeld = held.get_future().share()](RuleScanResult) {
            if (results.fetch_add(1) == 0) {
                streamHeld.wait();
                stream->cancel();
                first.set_value();
            }
        },
        [&] { ends.fetch_add(1); });
    held.set_value();
    first.get_future().wait();
    stream.reset();
    EXPECT_EQ(results.load(), 1);
    EXPECT_EQ(ends.load(), 0);

    // Cancelled from outside while a callback runs: cancel() returns only once it is over. Whether
    // the end comes first depends on which of the two threads wins, so it is not checked here.
    std::promise<void> inside, release;
    std::atomic<bool> callbackOver{false};
    auto slow = CacheScanner::scan(
        {rule("slow", {})}, {},
        [&, released = release.get_future().share()](RuleScanResult) {
            inside.set_value();
            released.wait();
            callbackOver = true;
        },
        [&] { ends.fetch_add(1); });
    inside.get_future().wait();
    std::thread releaser([&] { release.set_value(); });
    slow.cancel();
    EXPECT_TRUE(callbackOver.load());
    releaser.join();
}
