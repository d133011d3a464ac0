#include "ModelWork.h"

#include <map>

namespace lumabroom {

void AppModel::toggleRule(const RuleScanResult& result) {
    assertOnOwnThread();
    if (result.rule.safety == SafetyLevel::reportOnly || result.entries.empty()) return;
    const bool select = selection(result) != RuleSelection::all;
    for (Key key : keysOf(result)) setKeySelected(key, select);
    Q_EMIT selectedEntryIDsChanged();
}

void AppModel::toggleEntry(const RuleScanResult& result, const std::string& entryID) {
    assertOnOwnThread();
    if (result.rule.safety == SafetyLevel::reportOnly) return;
    const auto key = paths_.find(entryID);
    if (key) setKeySelected(*key, !selected_[*key]);
    else if (selectedElsewhere_.erase(entryID) == 0) selectedElsewhere_.insert(entryID);
    Q_EMIT selectedEntryIDsChanged();
}

void AppModel::toggleExpansion(Category category) {
    CategorySet collapsed = collapsedCategories_;
    if (collapsed.erase(category) == 0) collapsed.insert(category);
    assign(collapsedCategories_, std::move(collapsed), &AppModel::collapsedCategoriesChanged);
}

void AppModel::clean(CleanMethod method) {
    assertOnOwnThread();
    if (isBusy_) return;
    std::vector<ScanEntry> chosen;
    std::set<std::string> touchedRules;
    std::map<std::string, std::set<std::string>> rulesHolding; // by path: what an undo rescans
    for (std::size_t i = 0; i < results_.size(); ++i) {
        const bool cleanable = results_[i].rule.safety != SafetyLevel::reportOnly;
        for (std::size_t j = 0; j < results_[i].entries.size(); ++j) {
            if (!selected_[indexed_[i].keys[j]]) continue;
            touchedRules.insert(results_[i].rule.id);
            rulesHolding[results_[i].entries[j].url.native()].insert(results_[i].rule.id);
            if (cleanable) chosen.push_back(results_[i].entries[j]);
        }
    }
    if (chosen.empty()) return;
    assign(isBusy_, true, &AppModel::isBusyChanged);
    offMainThread([clean = services_.clean, chosen = std::move(chosen), method] { return clean(chosen, method); },
                  [this, method, touchedRules = std::move(touchedRules),
                   rulesHolding = std::move(rulesHolding)](CleanResult outcome) {
                      setSummary({ActionSummary::Cleaned{outcome.freedBytes, method == CleanMethod::trash,
                                                         static_cast<std::int64_t>(outcome.failures.size())}});
                      if (method == CleanMethod::trash) {
                          std::set<std::string> ruleIDs;
                          for (const auto& trashed : outcome.trashed)
                              if (auto holding = rulesHolding.find(trashed.url.native()); holding != rulesHolding.end())
                                  ruleIDs.insert(holding->second.begin(), holding->second.end());
                          offerUndo(std::move(outcome.trashed), std::move(ruleIDs));
                      }
                      setSelectedEntryIDs({});
                      assign(isBusy_, false, &AppModel::isBusyChanged);
                      assign(diskSpace_, services_.diskSpace(), &AppModel::diskSpaceChanged);
                      rescanRules(touchedRules);
                  });
}

void AppModel::undoLastClean() {
    assertOnOwnThread();
    if (isBusy_ || isUndoing_ || undoItems_.empty()) return;
    // Taken at once: the offer ends with the press, whatever the outcome.
    auto items = std::exchange(undoItems_, {});
    auto ruleIDs = std::exchange(undoRuleIDs_, {});
    Q_EMIT canUndoChanged();
    assign(isUndoing_, true, &AppModel::isUndoingChanged);
    offMainThread(
        [restore = services_.restore, items = std::move(items)] {
            ActionSummary::Restored outcome;
            for (const auto& trashed : items) {
                if (restore(trashed.item)) ++outcome.failures;
                else outcome.bytes += trashed.freedBytes;
            }
            return outcome;
        },
        [this, ruleIDs = std::move(ruleIDs)](ActionSummary::Restored outcome) {
            setSummary({outcome});
            assign(isUndoing_, false, &AppModel::isUndoingChanged);
            rescanRules(ruleIDs);
        });
}

} // namespace lumabroom
