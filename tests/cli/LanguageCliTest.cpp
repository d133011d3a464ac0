#include "support/Process.h"
#include "support/TempTree.h"
#include "support/Text.h"

#include "host/Platform.h"
#include "host/Settings.h"
#include "host/Volume.h"
#include "text/Localization.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {

// A macOS-like home with something for several rules, and a settings folder of its own that a
// child finds through XDG_CONFIG_HOME.
struct Home {
    TempTree tree;
    Home() {
        tree.file("home/Library/Developer/Xcode/DerivedData/App-abc/Build/x.o", 30'000);
        tree.file("home/.npm/_cacache/index-v5/aa", 20'000);
        tree.file("home/Library/Caches/Homebrew/wget--1.24.tar.gz", 400'000);
        tree.file("home/Downloads/tool.dmg", 12'000);
        tree.dir("tmp");
        tree.dir("config");
    }
    fs::path settingsFile() const { return tree / "config/Lumabroom/Lumabroom.conf"; }
    void storeSetting(const std::string& value) const {
        fs::create_directories(settingsFile().parent_path());
        std::ofstream(settingsFile()) << "[General]\nLumabroomLanguage=" << value << "\n";
    }
    std::string settings() const {
        std::ifstream in(settingsFile());
        return std::string(std::istreambuf_iterator<char>(in), {});
    }
    ProcessResult scan(std::vector<std::string> args, const std::string& languageVariable) const {
        std::map<std::string, std::string> env{{"HOME", (tree / "home").string()},
                                               {"TMPDIR", (tree / "tmp").string() + "/"},
                                               {"XDG_CONFIG_HOME", (tree / "config").string()},
                                               {"PATH", "/usr/bin:/bin"}};
        if (!languageVariable.empty()) env["LANGUAGE"] = languageVariable;
        args.insert(args.begin(), {scannerBinary(), "--catalogue", "macos"});
        return runProcess(args, env);
    }
};

bool isEnglishReport(const std::string& out) {
    return !containsCjk(out) && out.find("Package Manager Caches") != std::string::npos
           && out.find("DerivedData Build Products") != std::string::npos;
}

bool isChineseReport(const std::string& out) {
    return out.find("包管理器缓存") != std::string::npos && out.find("DerivedData 编译产物") != std::string::npos
           && out.find("Package Manager Caches") == std::string::npos;
}

std::string firstLine(const std::string& out) { return out.substr(0, out.find('\n')); }
} // namespace

TEST(LanguageCli, EnglishPreferenceGivesAReportWithoutAChineseCharacter) {
    Home h;
    auto r = h.scan({}, "de:en");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_FALSE(containsCjk(r.out)) << r.out;
    EXPECT_TRUE(isEnglishReport(r.out)) << r.out;
    for (const char* text : {"Xcode & Simulators", "npm", "Installers in Downloads", "System & Downloads", " kB"})
        EXPECT_NE(r.out.find(text), std::string::npos) << text;

    // First the volume of the home folder: its name, then used, free and total in decimal units.
    const auto volume = Volume::read((h.tree / "home").string());
    ASSERT_TRUE(volume);
    const std::string name = volume->name.value_or("Startup Disk");
    const std::regex shape(R"((.+)  [0-9.]+ (bytes|kB|MB|GB|TB) used · [0-9.]+ (bytes|kB|MB|GB|TB) free · [0-9.]+ (kB|MB|GB|TB) total)");
    std::smatch parts;
    const std::string line = firstLine(r.out);
    ASSERT_TRUE(std::regex_match(line, parts, shape)) << line;
    EXPECT_EQ(parts[1].str(), name);
}

TEST(LanguageCli, OtherPreferencesGiveChinese) {
    Home h;
    for (const std::string variable : {"ja", "zh_TW", "zh_CN:en", "fr:zh:en", ""}) {
        SCOPED_TRACE("LANGUAGE=" + variable);
        auto r = h.scan({}, variable);
        ASSERT_EQ(r.status, 0) << r.err;
        EXPECT_TRUE(isChineseReport(r.out)) << r.out;
        EXPECT_NE(r.out.find(" kB"), std::string::npos);
        const auto volume = Volume::read((h.tree / "home").string());
        ASSERT_TRUE(volume);
        EXPECT_TRUE(firstLine(r.out).starts_with(volume->name.value_or("启动磁盘") + "  ")) << firstLine(r.out);
    }
}

TEST(LanguageCli, OptionOverridesTheSettingForOneRunWithoutStoringIt) {
    if (Platform::isMacOS()) GTEST_SKIP() << "a child process keeps its settings in the user defaults";
    Home h;
    h.storeSetting("en");
    const std::string stored = h.settings();
    struct Case {
        std::vector<std::string> args;
        std::string variable;
        bool english;
    };
    const Case cases[] = {
        {{}, "ja", true},
        {{"--language", "zh-Hans"}, "de:en", false},
        {{"--language", "en"}, "ja", true},
        {{"--language", "system"}, "ja", false},
        {{"--language", "system"}, "de:en", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.args) + " LANGUAGE=" + c.variable);
        auto r = h.scan(c.args, c.variable);
        ASSERT_EQ(r.status, 0) << r.err;
        EXPECT_EQ(isEnglishReport(r.out), c.english) << r.out;
        EXPECT_EQ(isChineseReport(r.out), !c.english) << r.out;
        EXPECT_EQ(h.settings(), stored);
    }
}

TEST(LanguageCli, GarbledSettingFollowsTheSystemAndStaysStored) {
    if (Platform::isMacOS()) GTEST_SKIP() << "a child process keeps its settings in the user defaults";
    Home h;
    h.storeSetting("klingon");
    const std::string stored = h.settings();
    auto japanese = h.scan({}, "ja");
    ASSERT_EQ(japanese.status, 0) << japanese.err;
    EXPECT_TRUE(isChineseReport(japanese.out)) << japanese.out;
    auto english = h.scan({}, "de:en");
    ASSERT_EQ(english.status, 0) << english.err;
    EXPECT_TRUE(isEnglishReport(english.out)) << english.out;
    EXPECT_EQ(h.settings(), stored);
}

TEST(LanguageCli, ChoiceStoredHereReachesANewProcessAndSystemRemovesIt) {
    if (Platform::isMacOS()) GTEST_SKIP() << "a child process keeps its settings in the user defaults";
    Home h;
    Settings::useFolder(h.tree / "config");
    Localization::setLanguage(AppLanguage::english);
    auto stored = h.scan({}, "ja");
    ASSERT_EQ(stored.status, 0) << stored.err;
    EXPECT_TRUE(isEnglishReport(stored.out)) << stored.out;

    Localization::setLanguage(AppLanguage::system);
    EXPECT_EQ(h.settings().find("LumabroomLanguage"), std::string::npos) << h.settings();
    auto japanese = h.scan({}, "ja");
    EXPECT_TRUE(isChineseReport(japanese.out)) << japanese.out;
    auto english = h.scan({}, "de:en");
    EXPECT_TRUE(isEnglishReport(english.out)) << english.out;
}

TEST(LanguageCli, JsonLinesCarryTheRuleNameAndRawNumbers) {
    Home h;
    const std::pair<std::string, std::string> cases[] = {
        {"en", "DerivedData Build Products"},
        {"zh-Hans", "DerivedData 编译产物"},
    };
    for (const auto& [language, name] : cases) {
        SCOPED_TRACE(language);
        auto r = h.scan({"--json", "--language", language, "--rule", "xcode.derived-data", "--rule", "pm.npm"}, "");
        ASSERT_EQ(r.status, 0) << r.err;
        std::istringstream lines(r.out);
        std::map<std::string, nlohmann::ordered_json> rules;
        for (std::string line; std::getline(lines, line);) {
            const auto j = nlohmann::ordered_json::parse(line); // throws on anything but JSON, such as a volume line
            if (j.contains("id")) rules[j["id"].get<std::string>()] = j;
        }
        ASSERT_EQ(rules.size(), 2u);
        const auto& derived = rules["xcode.derived-data"];
        EXPECT_EQ(derived["name"], name);
        EXPECT_EQ(rules["pm.npm"]["name"], "npm");
        EXPECT_EQ(derived.begin().key(), "id");
        EXPECT_EQ(std::next(derived.begin()).key(), "name");
        EXPECT_EQ(derived["total"], allocatedBytes(h.tree / "home/Library/Developer/Xcode/DerivedData/App-abc/Build/x.o"));
    }
}

TEST(LanguageCli, UnknownLanguageIsAUsageError) {
    Home h;
    for (std::vector<std::string> args : {std::vector<std::string>{"--language"}, {"--language", "fr"},
                                          {"--language", "zh"}, {"--language", "EN"}}) {
        SCOPED_TRACE(testing::PrintToString(args));
        auto r = h.scan(args, "");
        EXPECT_EQ(r.status, 2);
        EXPECT_TRUE(r.out.empty());
        EXPECT_NE(r.err.find("usage: lumabroom-scan"), std::string::npos);
    }
}
