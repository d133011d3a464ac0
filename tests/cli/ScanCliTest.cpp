#include "support/Process.h"
#include "support/TempTree.h"
#include "support/Text.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <map>
#include <set>
#include <sstream>

using namespace lumabroom::test;
using nlohmann::json;
namespace fs = std::filesystem;

namespace {
struct Home {
    TempTree tree;
    std::map<std::string, std::string> env() const {
        return {{"HOME", (tree / "home").string()}, {"TMPDIR", (tree / "tmp").string() + "/"}, {"PATH", "/usr/bin:/bin"}};
    }
    ProcessResult scan(std::vector<std::string> args) const {
        args.insert(args.begin(), scannerBinary());
        return runProcess(args, env());
    }
};

std::vector<json> jsonLines(const std::string& out) {
    std::vector<json> lines;
    std::istringstream in(out);
    for (std::string line; std::getline(in, line);) lines.push_back(json::parse(line)); // throws on bad JSON
    return lines;
}

std::map<std::string, json> byRule(const std::vector<json>& lines) {
    std::map<std::string, json> rules;
    for (const auto& l : lines)
        if (l.contains("id")) rules[l["id"].get<std::string>()] = l;
    return rules;
}
} // namespace

TEST(ScanCli, JsonReportsEveryRuleOnceThenDone) {
    Home h;
    h.tree.dir("home");
    h.tree.dir("tmp");
    auto r = h.scan({"--json", "--catalogue", "macos"});
    ASSERT_EQ(r.status, 0) << r.err;
    auto lines = jsonLines(r.out);
    ASSERT_EQ(lines.size(), 38u);
    auto rules = byRule(lines);
    EXPECT_EQ(rules.size(), 37u);
    EXPECT_FALSE(rules.count("tool.codex-worktrees"));
    EXPECT_EQ(lines.back()["done"], true);
    EXPECT_EQ(lines.back()["rules"], 37);
    EXPECT_EQ(lines.back()["total"], 0);
    EXPECT_TRUE(r.err.empty()) << "no progress line when standard error is no terminal";
}

TEST(ScanCli, MacCatalogueFindsExactlyWhatTheRulesDefine) {
    Home h;
    auto& t = h.tree;
    auto dd1 = t.file("home/Library/Developer/Xcode/DerivedData/App-abc/Build/x.o", 30'000);
    auto dd2 = t.file("home/Library/Developer/Xcode/DerivedData/Other-def/info.plist", 4000);
    t.file("home/Library/Developer/Xcode/DerivedData/.DS_Store", 10);
    auto dev = t.file("home/Library/Developer/CoreSimulator/Devices/0A1B2C3D-1111-2222-3333-444455556666/data/f", 5000);
    t.file("home/Library/Developer/CoreSimulator/Devices/device_set.plist", 100);
    auto dmg = t.file("home/Downloads/tool.dmg", 12'000);
    t.file("home/Downloads/.partial.dmg", 12'000);
    t.file("home/Downloads/notes.txt", 100);
    auto solo = t.file("home/.pnpm-store/v3/files/00/solo", 8000);
    t.file("home/.pnpm-store/v3/files/00/shared", 8000);
    t.hardlink("home/project/node_modules/shared", "home/.pnpm-store/v3/files/00/shared");
    auto tmpEntry = t.file("tmp/build-123/obj", 3000);

    auto r = h.scan({"--json", "--catalogue", "macos", "--rule", "xcode.derived-data", "--rule", "xcode.simulator-devices",
                     "--rule", "sys.downloads-installers", "--rule", "pm.pnpm", "--rule", "sys.tmp-folders"});
    ASSERT_EQ(r.status, 0) << r.err;
    auto rules = byRule(jsonLines(r.out));
    ASSERT_EQ(rules.size(), 5u);
    const std::string home = (t / "home").string();
    auto entries = [&](const std::string& id) {
        std::vector<std::pair<std::string, std::int64_t>> out;
        for (const auto& e : rules[id]["entries"]) out.emplace_back(e["path"].get<std::string>(), e["size"].get<std::int64_t>());
        return out;
    };
    EXPECT_EQ(entries("xcode.derived-data"),
              (std::vector<std::pair<std::string, std::int64_t>>{
                  {home + "/Library/Developer/Xcode/DerivedData/App-abc", allocatedBytes(dd1)},
                  {home + "/Library/Developer/Xcode/DerivedData/Other-def", allocatedBytes(dd2)}}));
    EXPECT_EQ(entries("xcode.simulator-devices"),
              (std::vector<std::pair<std::string, std::int64_t>>{
                  {home + "/Library/Developer/CoreSimulator/Devices/0A1B2C3D-1111-2222-3333-444455556666", allocatedBytes(dev)}}));
    EXPECT_EQ(entries("sys.downloads-installers"),
              (std::vector<std::pair<std::string, std::int64_t>>{{home + "/Downloads/tool.dmg", allocatedBytes(dmg)}}));
    EXPECT_EQ(entries("pm.pnpm"),
              (std::vector<std::pair<std::string, std::int64_t>>{{home + "/.pnpm-store/v3", allocatedBytes(solo)}}));
    EXPECT_EQ(entries("sys.tmp-folders"),
              (std::vector<std::pair<std::string, std::int64_t>>{{(t / "tmp").string() + "/build-123", allocatedBytes(tmpEntry)}}));
    EXPECT_EQ(rules["pm.pnpm"]["total"], allocatedBytes(solo));
}

TEST(ScanCli, HostileTreesKeepTheScanRunningAndTheOutputValid) {
    Home h;
    auto& t = h.tree;
    t.file("home/Library/Caches/Homebrew/ok/file", 4096);
    t.file(std::string("home/Library/Caches/Homebrew/bad-\xff\xfe-name/file"), 4096);
    t.file("home/Library/Caches/Homebrew/shut/secret", 4096);
    t.makeUnreadable("home/Library/Caches/Homebrew/shut");
    t.symlink("home/Library/Caches/Homebrew/ok/loop", t / "home/Library/Caches/Homebrew/ok");
    t.symlink("home/Library/Caches/Homebrew/self", t / "home/Library/Caches/Homebrew/self");
    std::string deep = "home/Library/Caches/Homebrew/deep";
    while (deep.size() < 4000) deep += "/another-rather-long-folder-name";
    auto leaf = t.file(deep + "/leaf", 4096);
    auto r = h.scan({"--json", "--catalogue", "macos"});
    ASSERT_EQ(r.status, 0) << r.err;
    auto lines = jsonLines(r.out);
    ASSERT_EQ(lines.size(), 38u);
    auto brew = byRule(lines)["pm.homebrew"];
    std::set<std::string> names;
    for (const auto& e : brew["entries"]) names.insert(fs::path(e["path"].get<std::string>()).filename().string());
    EXPECT_EQ(names, (std::set<std::string>{"ok", "bad-\xef\xbf\xbd\xef\xbf\xbd-name", "shut", "deep"}));
    for (const auto& e : brew["entries"]) {
        if (e["path"].get<std::string>().ends_with("/deep")) {
            EXPECT_EQ(e["size"], allocatedBytes(leaf));
        }
    }
}

TEST(ScanCli, ReadableReportGroupsRulesByCategory) {
    Home h;
    h.tree.file("home/.npm/_cacache/index-v5/aa", 20'000);
    auto r = h.scan({"--catalogue", "macos", "--language", "zh-Hans"});
    ASSERT_EQ(r.status, 0) << r.err;
    const auto xcode = r.out.find("Xcode 与模拟器"), pm = r.out.find("包管理器缓存"), sys = r.out.find("系统与下载");
    ASSERT_NE(xcode, std::string::npos);
    EXPECT_LT(xcode, pm);
    EXPECT_LT(pm, sys);
    EXPECT_NE(r.out.find("  ~/.npm/_cacache\n"), std::string::npos) << "paths below home start with ~";
    EXPECT_NE(r.out.find("\nTotal "), std::string::npos);
    EXPECT_NE(r.out.find(" kB"), std::string::npos) << "decimal units";
}

TEST(ScanCli, BadArgumentsPrintUsageAndExitWithTwo) {
    Home h;
    for (std::vector<std::string> args : {std::vector<std::string>{"--bogus"}, {"--catalogue"}, {"--catalogue", "windows"},
                                          {"--rule", "no.such-rule"}, {"--rule"}, {"positional"}}) {
        auto r = h.scan(args);
        SCOPED_TRACE(args[0]);
        EXPECT_EQ(r.status, 2);
        EXPECT_TRUE(r.out.empty());
        EXPECT_NE(r.err.find("usage: lumabroom-scan"), std::string::npos);
    }
    auto help = h.scan({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("--catalogue"), std::string::npos);
}
