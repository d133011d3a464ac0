#include "ChartFixture.h"

#include "text/Localization.h"

#include <algorithm>
#include <cmath>

namespace lumabroom::test {

RuleScanResult rule(const std::string& id, Category category, const std::vector<std::int64_t>& sizes,
                    SafetyLevel safety) {
    RuleScanResult result;
    result.rule.id = id;
    result.rule.nameKey = id;
    result.rule.category = category;
    result.rule.safety = safety;
    for (std::size_t i = 0; i < sizes.size(); ++i)
        result.entries.push_back(ScanEntry{.url = entryID(id, int(i)), .size = sizes[i], .label = std::nullopt});
    return result;
}

RuleScanResult rule(const std::string& id, Category category, std::initializer_list<std::int64_t> sizes,
                    SafetyLevel safety) {
    return rule(id, category, std::vector<std::int64_t>(sizes), safety);
}

std::string entryID(const std::string& ruleID, int index) { return "/r/" + ruleID + "/e" + std::to_string(index); }

void ChartTest::SetUp() { Localization::setLanguageForThisRun(AppLanguage::chinese); }
void ChartTest::TearDown() { Localization::setLanguageForThisRun(AppLanguage::system); }

ChartInput ChartTest::input() const {
    ChartInput in;
    for (Category category : allCategories) {
        VisibleGroup group{category, {}};
        for (const RuleScanResult& r : results)
            if (r.rule.category == category && r.totalSize() > 0) group.results.push_back(&r);
        std::ranges::stable_sort(group.results, std::greater{}, &RuleScanResult::totalSize);
        if (!group.results.empty()) in.groups.push_back(std::move(group));
    }
    in.results = results;
    in.isSelected = [this](const std::string& id) { return selected.contains(id); };
    in.route = route;
    in.scanProgressText = "3/39";
    return in;
}

std::int64_t bytesReaching(double radians) {
    const auto span = [](std::int64_t bytes) { return double(bytes) / double(circleBytes) * twoPi; };
    auto bytes = std::int64_t(std::ldexp(radians / twoPi, 60));
    while (span(bytes) < radians) ++bytes;
    while (span(bytes - 1) >= radians) --bytes;
    return bytes;
}

} // namespace lumabroom::test
