#include "scan/PathExpander.h"

#include "support/Process.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace lumabroom;
using lumabroom::test::ScopedEnv;
using lumabroom::test::TempTree;
namespace fs = std::filesystem;

TEST(PathExpander, ResolvesPrefixesAndTildeOnlyAtTheStart) {
    TempTree t;
    ScopedEnv env({{"HOME", (t / "home").string()},
                   {"TMPDIR", (t / "var/T/").string()},
                   {"XDG_CACHE_HOME", (t / "xc").string()},
                   {"XDG_DATA_HOME", "relative/ignored"}});
    const std::string root = t.root().string();
    const std::pair<std::string, std::string> cases[] = {
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
    for (const auto& [pattern, expected] : cases) EXPECT_EQ(PathExpander::resolve(pattern), expected) << pattern;
}

// The patterns of the rules themselves are expanded in a synthetic home by the catalogue's test.
TEST(PathExpander, WildcardsMatchLikeFnmatchWithLeadingPeriodAndOnlyExistingPlacesAreKept) {
    TempTree t;
    ScopedEnv env({{"HOME", t.root().string()}});
    for (const char* file :
         {"Downloads/a.dmg", "Downloads/.hidden.dmg", "Downloads/B.DMG", "Downloads/c.dmg.part", "hid/.config",
          "hid/visible", "esc/a*b", "esc/axb", "br/x1", "br/.1", "Archives/loose-file", "sessions/c"})
        t.file(file);
    for (const char* dir : {"Downloads/folder.dmg", "Archives/2024-01-01/App 1.xcarchive", "sessions/a/data",
                            "sessions/b", "real/inside"})
        t.dir(dir);
    t.symlink("caches/good", t / "real");
    t.symlink("caches/dangling", t / "nowhere");
    t.symlink("caches/loop", t / "caches/loop");
    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {"~/Downloads/*.dmg", {"Downloads/a.dmg", "Downloads/folder.dmg"}},
        {"~/hid/*", {"hid/visible"}},
        {"~/hid/.*", {"hid/.config"}},
        {"~/hid/?config", {}},
        {"~/esc/a\\*b", {"esc/a*b"}},
        {"~/br/[x.]1", {"br/x1"}},
        {"~/Archives/*/*", {"Archives/2024-01-01/App 1.xcarchive"}},
        {"~/sessions//*/data/", {"sessions/a/data"}},
        {"~/caches/*", {"caches/good"}},
        {"~/caches/*/inside", {"caches/good/inside"}},
        {"~/caches/dangling", {}},
        {"~/missing/*", {}},
        {"///", {"/"}},
    };
    const std::string prefix = t.root().string() + "/";
    for (const auto& [pattern, expected] : cases) {
        std::vector<std::string> found;
        for (const fs::path& p : PathExpander::expand(pattern))
            found.push_back(p.string().starts_with(prefix) ? p.string().substr(prefix.size()) : p.string());
        std::sort(found.begin(), found.end());
        EXPECT_EQ(found, expected) << pattern;
    }
}

TEST(PathExpander, UnreadableFolderContributesNothing) {
    TempTree t;
    t.file("open/a/x");
    t.file("shut/b/x");
    t.makeUnreadable("shut");
    const std::string pattern = t.root().string() + "/*/*/x";
    EXPECT_EQ(test::asUnprivileged([&] { return static_cast<long long>(PathExpander::expand(pattern).size()); }), 1);
}
