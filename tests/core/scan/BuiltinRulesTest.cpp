#include "scan/BuiltinRules.h"
#include "scan/PathExpander.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace lumabroom {
namespace {

namespace fs = std::filesystem;
using test::ScopedEnv;
using test::TempTree;

constexpr std::array pathTables{PathTable::macOS, PathTable::linuxOS};

std::vector<std::string> idsWhere(PathTable table, const std::function<bool(const CleanRule&)>& predicate) {
    std::vector<std::string> ids;
    for (const CleanRule& rule : BuiltinRules::all(table)) {
        if (predicate(rule)) ids.push_back(rule.id);
    }
    return ids;
}

TEST(BuiltinRules, PathTableRawValuesAndDefault) {
    EXPECT_EQ(rawValue(PathTable::macOS), "macos");
    EXPECT_EQ(rawValue(PathTable::linuxOS), "linux");
#if defined(__APPLE__)
    EXPECT_EQ(runningPathTable(), PathTable::macOS);
#else
    EXPECT_EQ(runningPathTable(), PathTable::linuxOS);
#endif
    EXPECT_EQ(&BuiltinRules::all(), &BuiltinRules::all(runningPathTable()));
}

TEST(BuiltinRules, GroupsMakeUpTheCatalogueInCategoryOrder) {
    for (PathTable table : pathTables) {
        SCOPED_TRACE(rawValue(table));
        struct Group {
            const std::vector<CleanRule>& rules;
            Category category;
            std::size_t size;
        };
        const std::array groups{
            Group{BuiltinRules::xcode(table), Category::xcode, 9},
            Group{BuiltinRules::packageManagers(table), Category::packageManager, 14},
            Group{BuiltinRules::tools(table), Category::tool, 3},
            Group{BuiltinRules::runtimeDownloads(table), Category::runtimeDownloads, 7},
            Group{BuiltinRules::code(table), Category::code, 3},
            Group{BuiltinRules::system(table), Category::system, 2},
        };
        std::vector<CleanRule> concatenated;
        for (const Group& group : groups) {
            SCOPED_TRACE(rawValue(group.category));
            EXPECT_EQ(group.rules.size(), group.size);
            for (const CleanRule& rule : group.rules) EXPECT_EQ(rule.category, group.category) << rule.id;
            concatenated.insert(concatenated.end(), group.rules.begin(), group.rules.end());
        }
        EXPECT_EQ(BuiltinRules::all(table).size(), 38u);
        EXPECT_EQ(BuiltinRules::all(table), concatenated);
    }
}

TEST(BuiltinRules, IdsAreDistinctAndFindReturnsTheCataloguedRule) {
    for (PathTable table : pathTables) {
        SCOPED_TRACE(rawValue(table));
        const auto& all = BuiltinRules::all(table);
        std::set<std::string> ids;
        for (const CleanRule& rule : all) {
            ids.insert(rule.id);
            EXPECT_EQ(BuiltinRules::find(rule.id, table), &rule) << rule.id;
        }
        EXPECT_EQ(ids.size(), 38u);
        EXPECT_EQ(BuiltinRules::find("pm.unknown", table), nullptr);
        EXPECT_EQ(BuiltinRules::find("", table), nullptr);
        EXPECT_EQ(BuiltinRules::find("PM.NPM", table), nullptr);
    }
}

TEST(BuiltinRules, FlagsAndPathlessRules) {
    for (PathTable table : pathTables) {
        SCOPED_TRACE(rawValue(table));
        EXPECT_EQ(idsWhere(table, [](const CleanRule& rule) { return rule.exclusiveSizeOnly; }),
                  std::vector<std::string>{"pm.pnpm"});
        // Their entries come from scan routes of their own.
        EXPECT_EQ(idsWhere(table, [](const CleanRule& rule) { return rule.paths.empty(); }),
                  (std::vector<std::string>{"tool.codex-worktrees", "code.claude-sessions"}));
    }
}

TEST(BuiltinRules, TablesDifferOnlyInPaths) {
    const auto& macOS = BuiltinRules::all(PathTable::macOS);
    const auto& linuxOS = BuiltinRules::all(PathTable::linuxOS);
    ASSERT_EQ(macOS.size(), linuxOS.size());
    for (std::size_t i = 0; i < macOS.size(); ++i) {
        SCOPED_TRACE(macOS[i].id);
        CleanRule a = macOS[i];
        CleanRule b = linuxOS[i];
        a.paths.clear();
        b.paths.clear();
        EXPECT_EQ(a, b);
    }
}

// The keys are lookup keys of the translation tables: one byte off and the text shows untranslated.
TEST(BuiltinRules, KeysSpotChecks) {
    constexpr std::string_view browserNote =
        "网页与代码缓存,删后自动重建,不含 Cookie/登录态;浏览器开着时个别文件可能占用失败,建议先退出";
    struct Case {
        std::string_view id;
        std::string_view nameKey;
        std::string_view noteKey;
        SafetyLevel safety;
    };
    const Case cases[] = {
        {"xcode.device-support", "设备支持文件 (DeviceSupport)", "按系统版本缓存的调试符号,连接设备时会自动重新生成",
         SafetyLevel::safe},
        {"pm.pnpm", "pnpm store",
         "只统计删除后真正释放的独占部分(与项目硬链接共享的不计);现用版本建议 pnpm store prune",
         SafetyLevel::caution},
        {"tool.docker", "Docker Desktop 虚拟磁盘", "请用 `docker system prune` 清理镜像/容器,直接删会丢失全部数据",
         SafetyLevel::reportOnly},
        {"tool.playwright", "Playwright 浏览器",
         "测试用浏览器二进制(按内核版本列出),npx playwright install 可重装", SafetyLevel::safe},
        {"rt.chrome-cache", "Chrome 缓存", browserNote, SafetyLevel::safe},
        {"rt.arc-cache", "Arc 缓存", browserNote, SafetyLevel::safe},
        {"rt.edge-cache", "Edge 缓存", browserNote, SafetyLevel::safe},
        {"rt.firefox-cache", "Firefox 缓存", browserNote, SafetyLevel::safe},
        {"code.claude-sessions", "Claude Code 会话记录",
         "按项目列出的对话历史(resume 用);逐项删除只清会话文件,保留 memory/ 记忆。删后 worktree 扫描会少一路发现种子",
         SafetyLevel::reportOnly},
        {"sys.downloads-installers", "下载目录安装包",
         "Downloads 里的 dmg/pkg/xip/iso 安装镜像,装完通常不再需要;建议用「移到废纸篓」", SafetyLevel::caution},
    };
    for (PathTable table : pathTables) {
        for (const Case& c : cases) {
            SCOPED_TRACE(std::string(rawValue(table)) + " " + std::string(c.id));
            const CleanRule* rule = BuiltinRules::find(c.id, table);
            ASSERT_NE(rule, nullptr);
            EXPECT_EQ(rule->nameKey, c.nameKey);
            EXPECT_EQ(rule->noteKey, c.noteKey);
            EXPECT_EQ(rule->safety, c.safety);
        }
    }
    // The keys use ASCII punctuation; the full-width forms would be other keys.
    for (const CleanRule& rule : BuiltinRules::all(PathTable::macOS)) {
        for (std::string_view fullWidth : {"，", "；", "（", "）", "："}) {
            EXPECT_EQ(rule.nameKey.find(fullWidth), std::string::npos) << rule.id;
            EXPECT_EQ(rule.noteKey.find(fullWidth), std::string::npos) << rule.id;
        }
    }
}

TEST(BuiltinRules, PathSpotChecks) {
    struct Case {
        std::string_view id;
        std::vector<std::string> macOS;
        std::vector<std::string> linuxOS;
    };
    const std::string uuidDevices =
        "~/Library/Developer/CoreSimulator/Devices/" + std::string(8, '?') + "-" + std::string(4, '?') + "-" +
        std::string(4, '?') + "-" + std::string(4, '?') + "-" + std::string(12, '?');
    const Case cases[] = {
        {"xcode.simulator-devices", {uuidDevices}, {uuidDevices}},
        // Linux has no cache folder beside the temporary one; "$DARWIN_CACHE" would name "/C" there.
        {"sys.tmp-folders", {"$TMPDIR/*", "$DARWIN_CACHE/*"}, {"$TMPDIR/*"}},
        {"tool.orbstack",
         {"~/Library/Group Containers/HUAQ24HBR6.dev.orbstack/data/*.raw",
          "~/Library/Group Containers/HUAQ24HBR6.dev.orbstack/data/swap.img", "~/.orbstack/data"},
         {"~/Library/Group Containers/HUAQ24HBR6.dev.orbstack/data/*.raw",
          "~/Library/Group Containers/HUAQ24HBR6.dev.orbstack/data/swap.img", "~/.orbstack/data"}},
        {"pm.pnpm", {"~/Library/pnpm/store/*", "~/.pnpm-store/*"}, {"$XDG_DATA_HOME/pnpm/store/*", "~/.pnpm-store/*"}},
        {"pm.uv", {"~/Library/Caches/uv", "~/.cache/uv"}, {"$XDG_CACHE_HOME/uv"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.id);
        ASSERT_NE(BuiltinRules::find(c.id, PathTable::macOS), nullptr);
        ASSERT_NE(BuiltinRules::find(c.id, PathTable::linuxOS), nullptr);
        EXPECT_EQ(BuiltinRules::find(c.id, PathTable::macOS)->paths, c.macOS);
        EXPECT_EQ(BuiltinRules::find(c.id, PathTable::linuxOS)->paths, c.linuxOS);
    }
}

struct Sample {
    fs::path path;
    bool isFile = false;
};

// Where a resolved pattern would match in a plausible installation: "*" becomes "item" and "?"
// becomes "0", so "*.dmg" gives "item.dmg" and the device pattern a name of UUID shape.
Sample samplePlace(std::string_view resolved) {
    Sample sample{fs::path("/"), false};
    std::size_t start = 0;
    while (start <= resolved.size()) {
        std::size_t end = resolved.find('/', start);
        if (end == std::string_view::npos) end = resolved.size();
        std::string_view segment = resolved.substr(start, end - start);
        start = end + 1;
        if (segment.empty()) continue;
        std::string name;
        for (char ch : segment) {
            if (ch == '*') name += "item";
            else if (ch == '?') name += '0';
            else name += ch;
        }
        sample.path /= name;
        sample.isFile = name != segment && name.find('.') != std::string::npos;
    }
    return sample;
}

bool within(const fs::path& inner, const fs::path& outer) {
    return std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end()).first == outer.end();
}

struct Environment {
    const char* name;
    PathTable table;
    // Relative to the tree; empty counts as unset.
    const char* xdgCacheHome;
    const char* xdgDataHome;
};

void PrintTo(const Environment& environment, std::ostream* out) { *out << environment.name; }

class CatalogueLocations : public testing::TestWithParam<Environment> {};

// With every pattern matched once in a synthetic home, no place may be found by two patterns or lie
// inside another pattern's place: it would be counted twice and offered for deletion twice.
TEST_P(CatalogueLocations, NoPlaceIsFoundTwice) {
    const Environment& environment = GetParam();
    TempTree tree;
    tree.dir("home");
    tree.dir("var/folders/zz/abc/T");
    auto fromTree = [&](std::string_view relative) {
        return relative.empty() ? std::string() : (tree / relative).string();
    };
    ScopedEnv env({
        {"HOME", fromTree("home")},
        {"TMPDIR", fromTree("var/folders/zz/abc/T") + "/"},
        {"XDG_CACHE_HOME", fromTree(environment.xdgCacheHome)},
        {"XDG_DATA_HOME", fromTree(environment.xdgDataHome)},
    });
    if (!PathExpander::resolve("$TMPDIR").starts_with(tree.root().string()))
        GTEST_SKIP() << "the temporary folder here does not follow TMPDIR";

    struct Found {
        std::string rule;
        std::string pattern;
        fs::path place;
    };
    std::vector<Found> samples;
    for (const CleanRule& rule : BuiltinRules::all(environment.table)) {
        for (const std::string& pattern : rule.paths) {
            const Sample sample = samplePlace(PathExpander::resolve(pattern));
            ASSERT_TRUE(within(sample.path, tree.root())) << pattern << " -> " << sample.path;
            const std::string relative = sample.path.lexically_relative(tree.root()).string();
            if (sample.isFile) tree.file(relative, 1);
            else tree.dir(relative);
            samples.push_back({rule.id, pattern, sample.path});
        }
    }
    for (const Found& sample : samples) {
        SCOPED_TRACE(sample.rule + " " + sample.pattern);
        std::vector<fs::path> found = PathExpander::expand(sample.pattern);
        EXPECT_EQ(found, std::vector<fs::path>{sample.place});
    }
    for (std::size_t i = 0; i < samples.size(); ++i) {
        for (std::size_t j = i + 1; j < samples.size(); ++j) {
            const Found& a = samples[i];
            const Found& b = samples[j];
            EXPECT_FALSE(within(a.place, b.place) || within(b.place, a.place))
                << a.rule << " (" << a.pattern << ") finds " << a.place << ", " << b.rule << " (" << b.pattern
                << ") finds " << b.place;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(BuiltinRules, CatalogueLocations,
                         testing::Values(Environment{"macOS", PathTable::macOS, "", ""},
                                         Environment{"linuxDefaultXdg", PathTable::linuxOS, "", ""},
                                         Environment{"linuxOwnXdg", PathTable::linuxOS, "xdg/cache", "xdg/data"}),
                         [](const testing::TestParamInfo<Environment>& info) { return std::string(info.param.name); });

} // namespace
} // namespace lumabroom
