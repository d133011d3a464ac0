#include "support/Process.h"
#include "support/TempTree.h"
#include "support/Text.h"

#include "host/Platform.h"
#include "host/Settings.h"
#include "host/Volume.h"
#include "text/Localization.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>

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
    std::string settings() const {
        return readFile(root() / "config/Lumabroom/Lumabroom.conf");
    }
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
} // namespace

TEST(LanguageCli, PreferencesOfTheSystemPickTheLanguageOfTheWholeReport) {
    Home h;
    const auto volume = Volume::read((h / "home").string());
    ASSERT_TRUE(volume);
    // First the volume of the home folder: its name, then used, free and total in decimal units.
    const std::regex englishHead(
        R"((.+)  [0-9.]+ (bytes|kB|MB|GB|TB) used · [0-9.]+ (bytes|kB|MB|GB|TB) free · [0-9.]+ (kB|MB|GB|TB) total)");
    for (const auto& [variable, english] :
         {std::pair{"de:en", true}, {"en_GB", true}, {"ja", false}, {"zh_TW", false}, {"fr:zh:en", false}, {"", false}}) {
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
