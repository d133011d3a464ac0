#include "scan/PathExpander.h"

#include "support/Process.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace lumabroom;
using lumabroom::test::ScopedEnv;
using lumabroom::test::TempTree;
namespace fs = std::filesystem;

namespace {
std::vector<std::string> sortedStrings(const std::vector<fs::path>& paths) {
    std::vector<std::string> out;
    for (const auto& p : paths) out.push_back(p.string());
    std::sort(out.begin(), out.end());
    return out;
}
} // namespace

TEST(PathExpanderResolve, PrefixesAndTilde) {
    TempTree t;
    ScopedEnv env({{"HOME", (t / "home").string()}, {"TMPDIR", (t / "var/T/").string()},
                   {"XDG_CACHE_HOME", (t / "xc").string()}, {"XDG_DATA_HOME", "relative/ignored"}});
    const std::string root = t.root().string();
    struct Case { std::string pattern, expected; } cases[] = {
        {"$TMPDIR/*", root + "/var/T//*"},
        {"$TMPDIRx", root + "/var/T/x"},
        {"$DARWIN_CACHE/*", root + "/var/C/*"},
        {"$XDG_CACHE_HOME/pip", root + "/xc/pip"},
        {"$XDG_DATA_HOME/pnpm", root + "/home/.local/share/pnpm"},
        {"~/Library/Caches", root + "/home/Library/Caches"},
        {"~", root + "/home"},
        {"~other/x", "~other/x"},
        {"/abs/~/x", "/abs/~/x"},
        {"mid/$TMPDIR", "mid/$TMPDIR"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pattern);
        EXPECT_EQ(PathExpander::resolve(c.pattern), c.expected);
    }
}

TEST(PathExpanderExpand, WildcardsFollowFnmatchWithLeadingPeriod) {
    TempTree t;
    ScopedEnv env({{"HOME", t.root().string()}});
    t.file("Downloads/a.dmg");
    t.file("Downloads/.hidden.dmg");
    t.file("Downloads/B.DMG");
    t.file("Downloads/c.dmg.part");
    t.dir("Downloads/folder.dmg");
    t.file("hid/.config");
    t.file("hid/visible");
    t.file("esc/a*b");
    t.file("esc/axb");
    t.file("q/ab");
    t.file("q/abc");
    t.file("br/x1");
    t.file("br/.1");
    const std::string r = t.root().string();
    struct Case { std::string pattern; std::vector<std::string> expected; } cases[] = {
        {"~/Downloads/*.dmg", {r + "/Downloads/a.dmg", r + "/Downloads/folder.dmg"}},
        {"~/hid/*", {r + "/hid/visible"}},
        {"~/hid/.*", {r + "/hid/.config"}},
        {"~/hid/?config", {}},
        {"~/esc/a\\*b", {r + "/esc/a*b"}},
        {"~/q/a?", {r + "/q/ab"}},
        {"~/br/[x.]1", {r + "/br/x1"}},
        {"~/Downloads/*.DMG", {r + "/Downloads/B.DMG"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pattern);
        EXPECT_EQ(sortedStrings(PathExpander::expand(c.pattern)), c.expected);
    }
}

TEST(PathExpanderExpand, SegmentsAfterWildcardsMustExistAndFilesAreNotListed) {
    TempTree t;
    ScopedEnv env({{"HOME", t.root().string()}});
    t.dir("Archives/2024-01-01/App 1.xcarchive");
    t.dir("Archives/2024-01-02/App 2.xcarchive");
    t.file("Archives/loose-file");
    t.dir("sessions/a/data");
    t.dir("sessions/b");
    t.file("sessions/c");
    const std::string r = t.root().string();
    EXPECT_EQ(sortedStrings(PathExpander::expand("~/Archives/*/*")),
              (std::vector<std::string>{r + "/Archives/2024-01-01/App 1.xcarchive", r + "/Archives/2024-01-02/App 2.xcarchive"}));
    EXPECT_EQ(sortedStrings(PathExpander::expand("~/sessions/*/data")), (std::vector<std::string>{r + "/sessions/a/data"}));
    EXPECT_EQ(sortedStrings(PathExpander::expand("~/sessions//*/data/")), (std::vector<std::string>{r + "/sessions/a/data"}));
    EXPECT_TRUE(PathExpander::expand("~/missing/*").empty());
    EXPECT_TRUE(PathExpander::expand("~/missing").empty());
    EXPECT_EQ(sortedStrings(PathExpander::expand("/")), (std::vector<std::string>{"/"}));
    EXPECT_EQ(sortedStrings(PathExpander::expand("///")), (std::vector<std::string>{"/"}));
}

TEST(PathExpanderExpand, LinksAreFollowedAndDanglingOnesDropped) {
    TempTree t;
    ScopedEnv env({{"HOME", t.root().string()}});
    t.dir("real/inside");
    t.symlink("caches/good", t / "real");
    t.symlink("caches/dangling", t / "nowhere");
    t.symlink("caches/loop", t / "caches/loop");
    const std::string r = t.root().string();
    EXPECT_EQ(sortedStrings(PathExpander::expand("~/caches/*")), (std::vector<std::string>{r + "/caches/good"}));
    EXPECT_EQ(sortedStrings(PathExpander::expand("~/caches/*/inside")), (std::vector<std::string>{r + "/caches/good/inside"}));
    EXPECT_TRUE(PathExpander::expand("~/caches/dangling").empty());
}

TEST(PathExpanderExpand, TemporaryFolderWithTrailingSlashAndUuidShapedNames) {
    TempTree t;
    ScopedEnv env({{"HOME", t.root().string()}, {"TMPDIR", (t / "T").string() + "/"}});
    t.dir("T/one");
    t.file("T/.hidden");
    t.dir("Devices/1A2B3C4D-0000-4000-8000-00000000000A");
    t.dir("Devices/1A2B3C4D-0000-4000-8000-00000000000AB");
    t.dir("Devices/device_set.plist-ish-name-that-is-long-enough");
    t.dir("Devices/.1A2B3C4-0000-4000-8000-00000000000A");
    const std::string r = t.root().string();
    EXPECT_EQ(sortedStrings(PathExpander::expand("$TMPDIR/*")), (std::vector<std::string>{r + "/T/one"}));
    EXPECT_EQ(sortedStrings(PathExpander::expand(R"(~/Devices/????????-????-????-????-????????????)")),
              (std::vector<std::string>{r + "/Devices/1A2B3C4D-0000-4000-8000-00000000000A"}));
}

TEST(PathExpanderExpand, UnreadableFolderContributesNothing) {
    TempTree t;
    t.file("open/a/x");
    t.file("shut/b/x");
    t.makeUnreadable("shut");
    const std::string pattern = t.root().string() + "/*/*/x";
    long long found = test::asUnprivileged([&] { return static_cast<long long>(PathExpander::expand(pattern).size()); });
    EXPECT_EQ(found, 1);
}
