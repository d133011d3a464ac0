// Every text the core can show must read in English. The keys come from the catalogue and the
// enumerations at run time, and the texts built at run time are produced over their whole range,
// so a new rule or case without its row in the English table fails here.

#include "LanguageTestSupport.h"

#include "clean/MaintenanceCommands.h"
#include "scan/BuiltinRules.h"
#include "text/DiskSpace.h"
#include "tools/DockerPruner.h"
#include "text/Formatting.h"
#include "text/Localization.h"

#include <gtest/gtest.h>

#include <set>

using namespace lumabroom;
using namespace lumabroom::test;

namespace {
// Every key the core looks up as it is.
std::set<std::string> displayKeys() {
    std::set<std::string> keys;
    for (PathTable table : {PathTable::macOS, PathTable::linuxOS}) {
        for (const CleanRule& rule : BuiltinRules::all(table)) {
            keys.insert(rule.nameKey);
            keys.insert(rule.noteKey);
        }
    }
    for (Category category : allCategories)
        if (!displayKeyIsLiteral(category)) keys.insert(std::string(displayKey(category)));
    for (SafetyLevel level : allSafetyLevels) keys.insert(std::string(displayKey(level)));
    for (DockerUsageKind kind : allDockerUsageKinds) keys.insert(std::string(displayKey(kind)));
    for (std::string_view key : MaintenanceCommands::detailKeys()) keys.insert(std::string(key));
    for (DockerPruneTarget target : allDockerPruneTargets) {
        keys.insert(std::string(titleKey(target)));
        keys.insert(std::string(detailKey(target)));
    }
    keys.insert("未被容器使用");
    keys.insert("未被容器挂载");
    return keys;
}
} // namespace

TEST(KeyCoverage, EveryDisplayKeyHasAnEnglishTextWithoutChinese) {
    for (const std::string& key : displayKeys()) {
        SCOPED_TRACE(key);
        const auto english = Localization::tableText(AppLanguage::english, key);
        ASSERT_TRUE(english) << "no English row in resources/translations/lumabroom_core_en.ts";
        EXPECT_FALSE(english->empty());
        EXPECT_FALSE(containsCjk(*english)) << *english;
    }
}

TEST(KeyCoverage, EveryFormattedFormHasItsEnglishPluralForms) {
    for (std::string_view form : Localization::formattedForms()) {
        SCOPED_TRACE(std::string(form));
        for (std::int64_t count : {1, 2}) {
            const auto english = Localization::tableText(AppLanguage::english, form, count);
            ASSERT_TRUE(english);
            EXPECT_FALSE(containsCjk(*english)) << *english;
        }
    }
}

TEST(KeyCoverage, EveryTextBuiltAtRunTimeReadsInEnglish) {
    LanguageScope english(AppLanguage::english);
    std::vector<std::string> texts;
    using namespace std::chrono;
    const system_clock::time_point now = sys_days{year{2025} / 6 / 1};
    for (int day = -3; day <= 3 * 365; ++day) texts.push_back(Formatting::age(now - days(day), now));
    for (DockerUsageKind kind : allDockerUsageKinds) {
        for (const char* count : {"0", "1", "12", "?"}) {
            texts.push_back(EntryLabel{DockerUsageLabel{kind, count, std::nullopt}}.text());
            texts.push_back(EntryLabel{DockerUsageLabel{kind, count, "1.2GB"}}.text());
        }
    }
    texts.push_back(EntryLabel{DockerOtherLabel{}}.text());
    texts.push_back(DiskSpace::from({std::nullopt, 1000, 1})->volumeName);
    texts.push_back(displayName(AppLanguage::system)); // the other two are their own names
    for (Category category : allCategories) texts.push_back(displayName(category));
    texts.push_back(Formatting::bytes(0));
    for (const char* built : {"悬空镜像 3f2a9c1b", "被 1 个容器使用", "被 12 个容器使用", "被 2 个容器挂载"})
        texts.push_back(Localization::text(built));
    for (const std::string& text : texts) EXPECT_FALSE(containsCjk(text)) << text;
    EXPECT_EQ(Localization::text("被 1 个容器使用"), "Used by 1 container");
    EXPECT_EQ(Localization::text("悬空镜像 3f2a9c1b"), "Dangling image 3f2a9c1b");
}

TEST(KeyCoverage, ChineseTextsAreExactlyTheKeys) {
    LanguageScope chinese(AppLanguage::chinese);
    for (PathTable table : {PathTable::macOS, PathTable::linuxOS}) {
        for (const CleanRule& rule : BuiltinRules::all(table)) {
            SCOPED_TRACE(rule.id);
            EXPECT_EQ(rule.name(), rule.nameKey);
            EXPECT_EQ(rule.note(), rule.noteKey);
        }
    }
    for (Category category : allCategories) EXPECT_EQ(displayName(category), displayKey(category));
    for (SafetyLevel level : allSafetyLevels) EXPECT_EQ(displayName(level), displayKey(level));
    for (DockerUsageKind kind : allDockerUsageKinds) EXPECT_EQ(displayName(kind), displayKey(kind));
}
