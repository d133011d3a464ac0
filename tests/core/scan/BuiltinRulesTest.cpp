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
} // namespace

// With every pattern matched once in a synthetic home, no place may be found by two patterns or lie
// inside another pattern's place: it would be counted twice and offered for deletion twice.
TEST(BuiltinRules, NoPlaceIsFoundTwice) {
    for (const auto& [table, ownXdg] :
         {std::pair{PathTable::macOS, false}, {PathTable::linuxOS, false}, {PathTable::linuxOS, true}}) {
        SCOPED_TRACE(std::string(rawValue(table)) + (ownXdg ? " with XDG variables" : ""));
        TempTree tree;
        ScopedEnv env({{"HOME", tree.dir("home").string()},
                       {"TMPDIR", tree.dir("var/folders/zz/abc/T").string() + "/"},
                       {"XDG_CACHE_HOME", ownXdg ? (tree / "xdg/cache").string() : ""},
                       {"XDG_DATA_HOME", ownXdg ? (tree / "xdg/data").string() : ""}});
        if (!PathExpander::resolve("$TMPDIR").starts_with(tree.root().string()))
            GTEST_SKIP() << "the temporary folder here does not follow TMPDIR";
        // Where each pattern would match in a plausible installation: "*" becomes "item" and "?" becomes
        // "0", so "*.dmg" gives the file "item.dmg" and the device pattern a folder of UUID shape.
        std::vector<std::pair<std::string, fs::path>> found; // rule and pattern, place
        for (const CleanRule& rule : BuiltinRules::all(table)) {
            for (const std::string& pattern : rule.paths) {
                const std::string resolved = PathExpander::resolve(pattern);
                const std::string last = fs::path(resolved).filename().string();
                std::string place;
                for (char ch : resolved) place += ch == '*' ? "item" : ch == '?' ? "0" : std::string(1, ch);
                const fs::path path = fs::path(place).lexically_normal();
                ASSERT_TRUE(within(path, tree.root())) << pattern << " -> " << path;
                const std::string relative = path.lexically_relative(tree.root()).string();
                const bool isFile = last.find_first_of("*?") != last.npos && last.find('.') != last.npos;
                isFile ? tree.file(relative, 1) : tree.dir(relative);
                found.emplace_back(rule.id + " " + pattern, path);
            }
        }
        for (std::size_t i = 0; i < found.size(); ++i) {
            const auto& [what, place] = found[i];
            SCOPED_TRACE(what);
            EXPECT_EQ(PathExpander::expand(what.substr(what.find(' ') + 1)), std::vector<fs::path>{place});
            for (const auto& [other, otherPlace] : std::span(found).subspan(i + 1))
                EXPECT_FALSE(within(place, otherPlace) || within(otherPlace, place)) << other;
        }
    }
}
