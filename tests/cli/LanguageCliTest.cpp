#include "Texts.h"
#include "core/agents/GitRepo.h"
#include "core/tools/FakeTool.h"
#include "support/Process.h"
#include "support/TempTree.h"
#include "support/Text.h"

#include "host/Platform.h"
#include "host/Settings.h"
#include "host/Volume.h"
#include "scan/BuiltinRules.h"
#include "text/Localization.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>

using namespace lumabroom;
using namespace lumabroom::test;

namespace {

// A macOS-like home with something for several rules, and a settings folder of its own that a
// child finds through XDG_CONFIG_HOME.
struct Home : TempTree {
    Home() {
        file("home/Library/Developer/Xcode/DerivedData/App-abc/Build/x.o", 30'000);
        file("home/.npm/_cacache/index-v5/aa", 20'000);
        file("home/Library/Caches/Homebrew/wget--1.24.tar.gz", 400'000);
        file("home/Downloads/tool.dmg", 12'000);
        dir("tmp");
    }
    void storeSetting(const std::string& value) {
        std::ofstream(file("config/Lumabroom/Lumabroom.conf")) << "[General]\nLumabroomLanguage=" << value << "\n";
    }
    std::string settings() const { return readFile(root() / "config/Lumabroom/Lumabroom.conf"); }
    ProcessResult scan(std::vector<std::string> args, const std::string& languageVariable) const {
        std::map<std::string, std::string> env{{"HOME", (root() / "home").string()},
                                               {"TMPDIR", (root() / "tmp").string() + "/"},
                                               {"XDG_CONFIG_HOME", (root() / "config").string()},
                                               {"PATH", "/usr/bin:/bin"}};
        if (!languageVariable.empty()) env["LANGUAGE"] = languageVariable;
        args.insert(args.begin(), {scannerBinary(), "--catalogue", "macos"});
        return runProcess(args, env);
    }
};

// The report in one language: English without a single Chinese character, or Chinese throughout.
bool isReportIn(bool english, const std::string& out) {
    if (english)
        return !containsCjk(out) && out.find("Package Manager Caches") != std::string::npos
               && out.find("DerivedData Build Products") != std::string::npos;
    return out.find("包管理器缓存") != std::string::npos && out.find("DerivedData 编译产物") != std::string::npos
           && out.find("Package Manager Caches") == std::string::npos;
}

// Something for every mode: a docker that answers, a model, a session, a simulator and a worktree
// that would lose work.
struct FullHome : AgentHome {
    FakeTool docker{home / ".orbstack/bin/docker"};
    FullHome() {
        docker.respond("system df --format {{json .}}",
                       R"~({"Active":"1","Reclaimable":"1.2GB (45%)","Size":"2.7GB","TotalCount":"5","Type":"Images"})~"
                       "\n");
        docker.respond(
            "system df -v --format {{json .}}",
            R"~({"Images":[{"Containers":"0","ID":"sha256:fedcba9876543210","Repository":"<none>",)~"
            R"~("Size":"1.2GB","Tag":"<none>"}],"Containers":[{"ID":"3f2a1b4c5d6e7f80","Image":"postgres:16",)~"
            R"~("Names":"db","Size":"63B (virtual 438MB)","Status":"Up 3 hours"}],)~"
            R"~("Volumes":[{"Links":"1","Name":"pgdata","Size":"47.2MB"}]})~"
            "\n");
        write(".orbstack/run/docker.sock", "");
        write(".ollama/models/manifests/registry.ollama.ai/library/llama3/8b", R"({"layers":[{"size":4661211808}]})");
        write(".claude/projects/p/a.jsonl", R"({"cwd":"/srv/app"})");
        write("Library/Developer/CoreSimulator/Devices/0A1B2C3D-1111-2222-3333-444455556666/device.plist",
              R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict><key>name</key>)"
              R"(<string>iPhone 15</string><key>runtime</key>)"
              R"(<string>com.apple.CoreSimulator.SimRuntime.iOS-17-2</string></dict></plist>)");
        const std::filesystem::path app = home / "src/app", orphan = home / "wt/orphan";
        makeRepo(app);
        git(app, {"worktree", "add", "-q", "--detach", orphan.string(), "main"});
        commitFile(orphan, "lost", "1");
        writeText(orphan / "scratch.txt", "unsaved");
        makeStateDatabase(home / ".codex/state_5.sqlite", {app.string()});
    }
};

ProcessResult runScanner(const AgentHome& h, std::vector<std::string> args, const std::string& language) {
    args.insert(args.begin(), {scannerBinary(), "--catalogue", "macos", "--language", language});
    return runProcess(args, {{"HOME", h.home.string()},
                             {"TMPDIR", h.tree->dir("tmp").string() + "/"},
                             {"XDG_DATA_HOME", (h.home / ".local/share").string()},
                             {"PATH", "/usr/bin:/bin"}});
}

// The words with Latin letters in `text` that are not part of a path.
std::set<std::string> latinWords(const std::string& text) {
    static const std::regex path(R"((^|\s|\()[~/]\S*)");
    static const std::regex word(R"([A-Za-z0-9:._-]+)");
    static const std::regex letter("[A-Za-z]");
    const std::string withoutPaths = std::regex_replace(text, path, "$1");
    std::set<std::string> words;
    for (auto it = std::sregex_iterator(withoutPaths.begin(), withoutPaths.end(), word); it != std::sregex_iterator();
         ++it)
        if (std::regex_search(it->str(), letter)) words.insert(it->str());
    return words;
}

// The product names that the Chinese names of the rules and categories (their keys) hold.
std::set<std::string> catalogueNames() {
    std::set<std::string> names;
    for (const CleanRule& rule : BuiltinRules::all(PathTable::macOS)) names.merge(latinWords(rule.nameKey));
    for (Category category : allCategories) names.merge(latinWords(std::string(displayKey(category))));
    return names;
}
} // namespace

TEST(LanguageCli, EveryKeyOfTheScannerHasAnEnglishRowWithItsPlaceholders) {
    static const std::regex placeholder("%[n1-9]");
    for (std::string_view key : Texts::all) {
        SCOPED_TRACE(std::string(key));
        const std::string source(key);
        std::multiset<std::string> wanted;
        for (auto it = std::sregex_iterator(source.begin(), source.end(), placeholder); it != std::sregex_iterator();
             ++it)
            wanted.insert(it->str());
        for (std::int64_t count : {1, 2}) {
            const auto english = Localization::tableText(AppLanguage::english, key, count);
            ASSERT_TRUE(english) << "no English row";
            EXPECT_FALSE(containsCjk(*english)) << *english;
            std::multiset<std::string> found;
            for (auto it = std::sregex_iterator(english->begin(), english->end(), placeholder);
                 it != std::sregex_iterator(); ++it)
                found.insert(it->str());
            EXPECT_EQ(found, wanted) << *english;
        }
    }
}

// In Chinese the only Latin words are names, units and what the tools said; in English there is no
// Chinese at all. Each mode is run with something to show and with nothing.
TEST(LanguageCli, EveryModeSpeaksOneLanguage) {
    FullHome full;
    AgentHome empty;
    std::set<std::string> names{"Docker", "docker", "Ollama", "Claude", "Code", "Codex", "kB", "MB", "GB",
                                // what the tools said, and the names in the home
                                "1.2GB", "postgres:16", "Up", "hours", "db", "pgdata", "fedcba987654", "3f2a1b4c5d6e",
                                "llama3:8b", "iPhone", "iOS", "0A1B2C3D-1111-2222-3333-444455556666", "orphan"};
    names.merge(catalogueNames());
    struct Case {
        const AgentHome* home;
        std::vector<std::string> args;
        const char *chinese, *english;
    };
    std::vector<Case> cases{
        {&full, {"--docker"}, "\n镜像 (1)\n", "\nImages (1)\n"},
        {&full, {"--models"}, "共 4.66 GB,1 个模型", "Total 4.66 GB in 1 model "},
        {&full, {"--sessions", "claude"}, "Claude Code 最大的会话\n", "Largest Claude Code sessions\n"},
        {&full, {"--simulators"}, "iPhone 15 · iOS 17.2", "iPhone 15 · iOS 17.2"},
        {&full,
         {"--worktrees"},
         "将丢失 1 个未提交的文件,1 个只在这里的提交 (没有远程仓库:别处没有副本)\n",
         "would lose 1 uncommitted file, 1 commit only here (no remote: no copy elsewhere)\n"},
        {&full, {}, "(未找到)", "(nothing found)"},
        {&empty, {"--models"}, "中没有 Ollama 模型。\n", "No Ollama models in ~/.ollama/models.\n"},
        {&empty, {"--sessions", "codex"}, "没有 Codex 的会话文件。\n", "No Codex session files.\n"},
        {&empty, {"--simulators"}, "没有找到模拟器设备。\n", "No simulator devices found.\n"},
        {&empty,
         {"--worktrees"},
         "代理工作过的仓库没有派生出工作树。\n",
         "No worktrees derived from the repositories the agents worked in.\n"},
    };
    if (!std::filesystem::exists("/var/run/docker.sock"))
        cases.push_back({&empty, {"--docker"}, "Docker 守护进程没有运行", "The Docker daemon is not running"});
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.args) + (c.home == &full ? " with something" : " with nothing"));
        const auto chinese = runScanner(*c.home, c.args, "zh-Hans");
        ASSERT_EQ(chinese.status, 0) << chinese.err;
        EXPECT_NE(chinese.out.find(c.chinese), std::string::npos) << chinese.out;
        for (const std::string& word : latinWords(chinese.out))
            EXPECT_TRUE(names.contains(word)) << word << " in\n" << chinese.out;
        const auto english = runScanner(*c.home, c.args, "en");
        ASSERT_EQ(english.status, 0) << english.err;
        EXPECT_NE(english.out.find(c.english), std::string::npos) << english.out;
        EXPECT_FALSE(containsCjk(english.out)) << english.out;
    }
}

TEST(LanguageCli, PreferencesOfTheSystemPickTheLanguageOfTheWholeReport) {
    Home h;
    const auto volume = Volume::read((h / "home").string());
    ASSERT_TRUE(volume);
    // First the volume of the home folder: its name, then used, free and total in decimal units.
    const std::regex englishHead(
        R"((.+)  [0-9.]+ (bytes|kB|MB|GB|TB) used · [0-9.]+ (bytes|kB|MB|GB|TB) free · [0-9.]+ (kB|MB|GB|TB) total)");
    for (const auto& [variable, english] : {std::pair{"de:en", true},
                                            {"en_GB", true},
                                            {"ja", false},
                                            {"zh_TW", false},
                                            {"fr:zh:en", false},
                                            {"", false}}) {
        SCOPED_TRACE(std::string("LANGUAGE=") + variable);
        auto r = h.scan({}, variable);
        ASSERT_EQ(r.status, 0) << r.err;
        EXPECT_TRUE(isReportIn(english, r.out)) << r.out;
        EXPECT_NE(r.out.find(" kB\n"), std::string::npos) << r.out;
        const std::string head = r.out.substr(0, r.out.find('\n'));
        std::smatch parts;
        if (english) {
            ASSERT_TRUE(std::regex_match(head, parts, englishHead)) << head;
            EXPECT_EQ(parts[1].str(), volume->name.value_or("Startup Disk"));
        } else {
            EXPECT_TRUE(head.starts_with(volume->name.value_or("启动磁盘") + "  ")) << head;
        }
    }
}

TEST(LanguageCli, SettingAndOptionDecideAndNoRunStoresAnything) {
    if (Platform::isMacOS()) GTEST_SKIP() << "a child process keeps its settings in the user defaults";
    Home h;
    struct Case {
        const char* stored;
        std::vector<std::string> args;
        const char* variable;
        bool english;
    };
    const Case cases[] = {
        {"en", {}, "ja", true},
        {"en", {"--language", "zh-Hans"}, "de:en", false},
        {"zh-Hans", {"--language", "en"}, "ja", true},
        {"en", {"--language", "system"}, "ja", false},
        {"zh-Hans", {"--language", "system"}, "de:en", true},
        // A garbled setting follows the system.
        {"klingon", {}, "ja", false},
        {"klingon", {}, "de:en", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.stored + testing::PrintToString(c.args) + " LANGUAGE=" + c.variable);
        h.storeSetting(c.stored);
        const std::string stored = h.settings();
        auto r = h.scan(c.args, c.variable);
        ASSERT_EQ(r.status, 0) << r.err;
        EXPECT_TRUE(isReportIn(c.english, r.out)) << r.out;
        EXPECT_EQ(h.settings(), stored);
    }
}

TEST(LanguageCli, ChoiceStoredHereReachesANewProcessAndSystemRemovesIt) {
    if (Platform::isMacOS()) GTEST_SKIP() << "a child process keeps its settings in the user defaults";
    Home h;
    Settings::useFolder(h / "config");
    Localization::setLanguage(AppLanguage::english);
    EXPECT_TRUE(isReportIn(true, h.scan({}, "ja").out));
    Localization::setLanguage(AppLanguage::system);
    EXPECT_EQ(h.settings().find("LumabroomLanguage"), std::string::npos) << h.settings();
    EXPECT_TRUE(isReportIn(false, h.scan({}, "ja").out));
    EXPECT_TRUE(isReportIn(true, h.scan({}, "de:en").out));
}
