// Every text the core can show must read in English. The keys come from the catalogue and the
// enumerations at run time, and the texts built at run time are produced over their whole range,
// so a new rule or case without its row in the English table fails here.

#include "LanguageTestSupport.h"

#include "clean/MaintenanceCommands.h"
#include "scan/BuiltinRules.h"
#include "scan/Category.h"
#include "scan/EntryLabel.h"
#include "scan/SafetyLevel.h"
#include "text/DiskSpace.h"
#include "text/Formatting.h"
#include "tools/DockerPruner.h"

#include <gtest/gtest.h>

#include <set>

using namespace lumabroom;
using namespace lumabroom::test;

TEST(KeyCoverage, EveryDisplayKeyAndFormattedFormHasAnEnglishTextWithoutChinese) {
    std::set<std::string> keys{"未被容器使用", "未被容器挂载"};
    for (PathTable table : {PathTable::macOS, PathTable::linuxOS})
        for (const CleanRule& rule : BuiltinRules::all(table)) keys.insert({rule.nameKey, rule.noteKey});
    for (Category category : allCategories)
        if (!displayKeyIsLiteral(category)) keys.insert(std::string(displayKey(category)));
    for (SafetyLevel level : allSafetyLevels) keys.insert(std::string(displayKey(level)));
    for (DockerUsageKind kind : allDockerUsageKinds) keys.insert(std::string(displayKey(kind)));
    for (std::string_view key : MaintenanceCommands::detailKeys()) keys.insert(std::string(key));
    for (DockerPruneTarget target : allDockerPruneTargets)
        keys.insert({std::string(titleKey(target)), std::string(detailKey(target))});
    for (const std::string& key : keys) {
        const auto english = Localization::tableText(AppLanguage::english, key);
        ASSERT_TRUE(english) << key << ": no English row in resources/translations/lumabroom_core_en.ts";
        EXPECT_TRUE(!english->empty() && !containsCjk(*english)) << key << " -> " << *english;
    }
    for (std::string_view form : Localization::formattedForms()) {
        for (std::int64_t count : {1, 2}) {
            const auto english = Localization::tableText(AppLanguage::english, form, count);
            ASSERT_TRUE(english) << form << " for " << count;
            EXPECT_FALSE(containsCjk(*english)) << *english;
        }
    }
}

TEST(KeyCoverage, EveryTextBuiltAtRunTimeReadsInEnglish) {
    LanguageScope english(AppLanguage::english);
    std::vector<std::string> texts{EntryLabel{DockerOtherLabel{}}.text(),
                                   DiskSpace::from({std::nullopt, 1000, 1})->volumeName,
                                   displayName(AppLanguage::system), Formatting::bytes(0)};
    using namespace std::chrono;
    const system_clock::time_point now = sys_days{year{2025} / 6 / 1};
    for (int day = -3; day <= 3 * 365; ++day) texts.push_back(Formatting::age(now - days(day), now));
    for (DockerUsageKind kind : allDockerUsageKinds)
        for (const char* count : {"0", "1", "12", "?"})
            for (auto reclaimable : {std::optional<std::string>(), std::optional<std::string>("1.2GB")})
                texts.push_back(EntryLabel{DockerUsageLabel{kind, count, reclaimable}}.text());
    for (Category category : allCategories) texts.push_back(displayName(category));
    for (const char* built : {"悬空镜像 3f2a9c1b", "被 1 个容器使用", "被 12 个容器使用", "被 2 个容器挂载"})
        texts.push_back(Localization::text(built));
    for (const std::string& text : texts) EXPECT_FALSE(containsCjk(text)) << text;
}
