// Every sentence and name of the model must read in English: each case of the summary is built from
// the variant itself, so a case added without its English rows fails here.

#include "ActionSummary.h"
#include "AppText.h"
#include "DisplayName.h"
#include "VisibleGroup.h"

#include "scan/Category.h"
#include "support/Text.h"
#include "text/Formatting.h"
#include "text/Localization.h"

#include <gtest/gtest.h>

using namespace lumabroom;

namespace {

struct English {
    English() { Localization::setLanguageForThisRun(AppLanguage::english); }
    ~English() { Localization::setLanguageForThisRun(AppLanguage::chinese); }
};

template <std::size_t... I>
std::vector<ActionSummary> everyCase(std::index_sequence<I...>) {
    return {ActionSummary{std::variant_alternative_t<I, ActionSummary::Case>{}}...};
}

} // namespace

TEST(AppKeyCoverage, EverySummaryCaseAndCountReadsInEnglish) {
    English english;
    std::vector<std::string> texts;
    for (const ActionSummary& summary : everyCase(std::make_index_sequence<std::variant_size_v<ActionSummary::Case>>{}))
        texts.push_back(summary.text());
    for (std::int64_t failures : {1, 2}) {
        texts.push_back(ActionSummary{ActionSummary::Cleaned{5, true, failures}}.text());
        texts.push_back(ActionSummary{ActionSummary::Restored{5, failures}}.text());
    }
    const RuleScanResult none{};
    for (std::size_t rest : {1, 2})
        texts.push_back(VisibleGroup{Category::code, std::vector(rest, &none), {}}.summary());
    texts.push_back(displayName(ScanEntry{"/h/.orbstack/data/data.img.raw", 1, {}}));
    for (const std::string& text : texts) EXPECT_FALSE(test::containsCjk(text)) << text;

    EXPECT_EQ(texts.front(), "Cleaned " + Formatting::bytes(0));
    EXPECT_EQ((ActionSummary{ActionSummary::Cleaned{0, true, 2}}.text()),
              "Cleaned " + Formatting::bytes(0) + ", freed when the Trash is emptied, 2 items failed");
    EXPECT_EQ((ActionSummary{ActionSummary::Restored{0, 1}}.text()),
              "Restored " + Formatting::bytes(0) + ", 1 item could not be put back");
    EXPECT_EQ(AppText::counted("其余 %n 项", 1), "1 more");
}
