#include "scan/BuiltinRules.h"
#include "scan/PathExpander.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <span>

using namespace lumabroom;
using lumabroom::test::ScopedEnv;
using lumabroom::test::TempTree;
namespace fs = std::filesystem;

namespace {
bool within(const fs::path& inner, const fs::path& outer) {
    return std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end()).first == outer.end();
}

// Where a resolved pattern would match in a plausible installation: "*" becomes "item" and "?"
// becomes "0", so "*.dmg" gives the file "item.dmg" and the device pattern a folder of UUID shape.
std::pair<fs::path, bool> samplePlace(const std::string& resolved) {
    std::string place;
    for (char ch : resolved) place += ch == '*' ? "item" : ch == '?' ? "0" : std::string(1, ch);
    const std::string last = fs::path(resolved).filename().string();
    const bool isFile = last.find_first_of("*?") != std::string::npos && last.find('.') != std::string::npos;
    return {fs::path(place).lexically_normal(), isFile};
}
} // namespace

// With every pattern matched once in a synthetic home, no place may be found by two patterns or lie
// inside another pattern's place: it would be counted twice and offered for deletion twice.
TEST(BuiltinRules, NoPlaceIsFoundTwice) {
    for (const auto& [table, ownXdg] :
         {std::pair{PathTable::macOS, false}, {PathTable::linuxOS, false}, {PathTable::linuxOS, true}}) {
        SCOPED_TRACE(std::string(rawValue(table)) + (ownXdg ? " with XDG variables" : ""));
        TempTree tree;
        tree.dir("home");
        tree.dir("var/folders/zz/abc/T");
        ScopedEnv env({{"HOME", (tree / "home").string()},
                       {"TMPDIR", (tree / "var/folders/zz/abc/T").string() + "/"},
                       {"XDG_CACHE_HOME", ownXdg ? (tree / "xdg/cache").string() : ""},
                       {"XDG_DATA_HOME", ownXdg ? (tree / "xdg/data").string() : ""}});
        if (!PathExpander::resolve("$TMPDIR").starts_with(tree.root().string()))
            GTEST_SKIP() << "the temporary folder here does not follow TMPDIR";

        struct Found {
            std::string rule, pattern;
            fs::path place;
        };
        std::vector<Found> found;
        for (const CleanRule& rule : BuiltinRules::all(table)) {
            for (const std::string& pattern : rule.paths) {
                const auto [place, isFile] = samplePlace(PathExpander::resolve(pattern));
                ASSERT_TRUE(within(place, tree.root())) << pattern << " -> " << place;
                const std::string relative = place.lexically_relative(tree.root()).string();
                isFile ? tree.file(relative, 1) : tree.dir(relative);
                found.push_back({rule.id, pattern, place});
            }
        }
        for (std::size_t i = 0; i < found.size(); ++i) {
            const Found& a = found[i];
            SCOPED_TRACE(a.rule + " " + a.pattern);
            EXPECT_EQ(PathExpander::expand(a.pattern), std::vector<fs::path>{a.place});
            for (const Found& b : std::span(found).subspan(i + 1))
                EXPECT_FALSE(within(a.place, b.place) || within(b.place, a.place)) << b.rule << " " << b.pattern;
        }
    }
}
