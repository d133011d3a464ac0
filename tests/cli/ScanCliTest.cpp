#include "support/Process.h"
#include "support/TempTree.h"
#include "support/Text.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>
#include <regex>
#include <set>
#include <sstream>

using namespace lumabroom::test;
using json = nlohmann::ordered_json; // the order of the keys is part of the output
namespace fs = std::filesystem;

namespace {
ProcessResult scan(const TempTree& tree, std::vector<std::string> args) {
    args.insert(args.begin(), scannerBinary());
    return runProcess(
        args,
        {{"HOME", (tree / "home").string()}, {"TMPDIR", (tree / "tmp").string() + "/"}, {"PATH", "/usr/bin:/bin"}});
}
} // namespace

// Beside what the plain rules define, the home holds names that are no UTF-8, an unreadable folder,
// link loops and a 4,000-character path: the scan must go on and its output stay valid.
TEST(ScanCli, JsonScanOfAMacLikeHomeGivesExactlyWhatTheRulesDefine) {
    TempTree t;
    // Per rule, its entries with the one file in each.
    struct Planted {
        std::string rule, entry, file;
        std::size_t bytes;
    };
    const Planted planted[] = {
        {"xcode.derived-data", "home/Library/Developer/Xcode/DerivedData/App-abc", "/Build/x.o", 30'000},
        {"xcode.derived-data", "home/Library/Developer/Xcode/DerivedData/Other-def", "/info.plist", 4000},
        {"xcode.simulator-devices", "home/Library/Developer/CoreSimulator/Devices/0A1B2C3D-1111-2222-3333-444455556666",
         "/data/f", 5000},
        {"sys.downloads-installers", "home/Downloads/tool.dmg", "", 12'000},
        {"pm.pnpm", "home/.pnpm-store/v3", "/files/00/solo", 8000},
        {"sys.tmp-folders", "tmp/build-123", "/obj", 3000},
    };
    using Entries = std::vector<std::pair<std::string, std::int64_t>>;
    std::map<std::string, Entries> expected;
    for (const Planted& p : planted)
        expected[p.rule].emplace_back((t / p.entry).string(), allocatedBytes(t.file(p.entry + p.file, p.bytes)));
    for (const char* noise :
         {"home/Library/Developer/Xcode/DerivedData/.DS_Store", "home/Downloads/.partial.dmg",
          "home/Library/Developer/CoreSimulator/Devices/device_set.plist", "home/Downloads/notes.txt"})
        t.file(noise, 100);
    t.file("home/.pnpm-store/v3/files/00/shared", 8000);
    t.hardlink("home/project/node_modules/shared", "home/.pnpm-store/v3/files/00/shared");
    const std::string brew = "home/Library/Caches/Homebrew/";
    t.file(brew + "ok/file", 4096);
    t.file(brew + "bad-\xff\xfe-name/file", 4096);
    t.file(brew + "shut/secret", 4096);
    t.makeUnreadable(brew + "shut");
    t.symlink(brew + "ok/loop", t / brew / "ok");
    t.symlink(brew + "self", t / brew / "self");
    std::string deep = brew + "deep";
    while (deep.size() < 4000) deep += "/another-rather-long-folder-name";
    auto leaf = t.file(deep + "/leaf", 4096);

    auto r = scan(t, {"--json", "--catalogue", "macos", "--language", "en"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err, "") << "no progress line when standard error is no terminal";
    std::vector<json> lines;
    std::istringstream in(r.out);
    for (std::string line; std::getline(in, line);) lines.push_back(json::parse(line)); // throws on bad JSON
    ASSERT_EQ(lines.size(), 38u);

    std::set<std::string> ids;
    std::int64_t total = 0;
    for (const json& rule : std::span(lines).first(37)) {
        const std::string id = rule["id"];
        ids.insert(id);
        if (id == "xcode.derived-data") {
            EXPECT_EQ(rule.begin().key() + " " + std::next(rule.begin()).key(), "id name");
            EXPECT_EQ(rule["name"], "DerivedData Build Products");
        }
        Entries found;
        std::int64_t sum = 0;
        for (const json& e : rule["entries"]) sum += found.emplace_back(e["path"], e["size"]).second;
        EXPECT_EQ(rule["total"], sum) << id;
        total += sum;
        if (id == "pm.homebrew") {
            std::set<std::string> names;
            for (const auto& [path, size] : found) names.insert(fs::path(path).filename().string());
            EXPECT_EQ(names, (std::set<std::string>{"ok", "bad-\xef\xbf\xbd\xef\xbf\xbd-name", "shut", "deep"}));
            EXPECT_EQ(std::ranges::count(found, std::pair{(t / brew).string() + "deep", allocatedBytes(leaf)}), 1);
            continue;
        }
        EXPECT_EQ(found, expected.contains(id) ? expected.at(id) : Entries{}) << id;
    }
    EXPECT_EQ(ids.size(), 37u);
    EXPECT_FALSE(ids.contains("tool.codex-worktrees"));
    EXPECT_EQ(lines.back()["done"], true);
    EXPECT_EQ(lines.back()["rules"], 37);
    EXPECT_EQ(lines.back()["total"], total);
}

// Sizes line up by the cells a terminal draws ("0 字节" takes six), names cannot steer the
// terminal, and every text is in the report's language.
TEST(ScanCli, ReadableReportGroupsRulesByCategoryInOneLanguage) {
    TempTree t;
    t.file("home/.npm/_cacache/index-v5/aa", 20'000);
    // The named ones are the largest, so they are among the five shown.
    const std::pair<const char*, std::size_t> downloads[] = {{"a\nb.dmg", 40'000},
                                                             {"x\x1b[31my.dmg", 30'000},
                                                             {"\xe5\xae\x89\xe8\xa3\x85.dmg", 20'000},
                                                             {"q'4.dmg", 10'000},
                                                             {"5.dmg", 0},
                                                             {"6.dmg", 0},
                                                             {"7.dmg", 0}};
    for (const auto& [name, bytes] : downloads) t.file(std::string("home/Downloads/") + name, bytes);
    struct Case {
        const char* language;
        std::vector<std::string> categories, lines, absent;
    };
    const Case cases[] = {
        {"zh-Hans",
         {"Xcode 与模拟器", "包管理器缓存", "系统与下载"},
         {"  ~/.npm/_cacache\n", "  $'~/Downloads/a\\nb.dmg'\n", "  $'~/Downloads/x\\E[31my.dmg'\n",
          "  ~/Downloads/\xe5\xae\x89\xe8\xa3\x85.dmg\n", "  ~/Downloads/q'4.dmg\n", "\n          0 字节  ~/Downloads/",
          "\n                  … 另有 2 项\n", "  (未找到)\n", "\n共 "},
         {"Total", "nothing found", "more", "\x1b"}},
        {"en",
         {"Xcode & Simulators", "Package Manager Caches", "System & Downloads"},
         {"  $'~/Downloads/a\\nb.dmg'\n", "\n         0 bytes  ~/Downloads/", "\n                  … 2 more\n",
          "  (nothing found)\n", "\nTotal "},
         {"\x1b", "未找到", "共"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.language);
        auto r = scan(t, {"--catalogue", "macos", "--language", c.language});
        ASSERT_EQ(r.status, 0) << r.err;
        std::size_t previous = 0;
        for (const auto& category : c.categories) {
            const auto at = r.out.find(category);
            EXPECT_TRUE(at != std::string::npos && at >= previous) << category << "\n" << r.out;
            previous = at;
        }
        for (const auto& line : c.lines) EXPECT_NE(r.out.find(line), std::string::npos) << line << "\n" << r.out;
        for (const auto& text : c.absent) EXPECT_EQ(r.out.find(text), std::string::npos) << text << "\n" << r.out;
    }
}

TEST(ScanCli, BadArgumentsPrintUsageAndExitWithTwo) {
    TempTree t;
    for (std::vector<std::string> args : {std::vector<std::string>{"--bogus"},
                                          {"--catalogue"},
                                          {"--catalogue", "windows"},
                                          {"--rule", "no.such-rule"},
                                          {"--rule"},
                                          {"positional"},
                                          {"--language"},
                                          {"--language", "fr"},
                                          {"--language", "EN"},
                                          {"--json", "extra"},
                                          {"--help-all"},
                                          {"-v"}}) {
        SCOPED_TRACE(testing::PrintToString(args));
        auto r = scan(t, args);
        EXPECT_EQ(r.status, 2);
        EXPECT_EQ(r.out, "");
        EXPECT_NE(r.err.find("\nusage: lumabroom-scan"), std::string::npos) << r.err;
    }
    for (const char* option : {"--help", "-h"}) {
        auto help = scan(t, {option});
        EXPECT_EQ(help.status, 0);
        EXPECT_TRUE(help.out.starts_with("usage: lumabroom-scan [--json]")) << help.out;
        for (const char* described : {"\n  --catalogue <NAME>  ", "\n  --limit <N>  ", "\n  --version  "})
            EXPECT_NE(help.out.find(described), std::string::npos) << described << " in\n" << help.out;
    }
    auto version = scan(t, {"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_TRUE(std::regex_match(version.out, std::regex("lumabroom-scan [0-9]+\\.[0-9]+\\.[0-9]+\n"))) << version.out;
}
