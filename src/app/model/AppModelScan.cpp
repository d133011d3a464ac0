#include "ModelWork.h"

#include <algorithm>

namespace lumabroom {

void AppModel::scan() {
    assertOnOwnThread();
    if (isBusy_) return;
    assign(isBusy_, true, &AppModel::isBusyChanged);
    assign(scannedRuleCount_, 0, &AppModel::scannedRuleCountChanged);
    assign(diskSpace_, services_.diskSpace(), &AppModel::diskSpaceChanged);

    // The last step of the progress waits for both the scanner and worktree discovery.
    scanPartsRunning_ = 2;
    discoverWorktrees(true, [this] { scanPartEnded(); });
    WorkPool::shared().start([this, inbox = inbox_, scanRules = services_.scan, rules = services_.scanRules] {
        scanRules(rules, [&](RuleScanResult result) {
            inbox->post([this, result = std::move(result)]() mutable {
                assign(scannedRuleCount_, scannedRuleCount_ + 1, &AppModel::scannedRuleCountChanged);
                apply(std::move(result));
            });
        });
        inbox->post([this] { scanPartEnded(); });
    });
}

void AppModel::scanPartEnded() {
    if (--scanPartsRunning_ > 0) return;
    assign(scannedRuleCount_, scannedRuleCount_ + 1, &AppModel::scannedRuleCountChanged);
    pruneSelection();
    assign(isBusy_, false, &AppModel::isBusyChanged);
}

void AppModel::rescanRules(const std::set<std::string>& ruleIDs) {
    assertOnOwnThread();
    std::vector<CleanRule> rules;
    for (const CleanRule& rule : services_.scanRules)
        if (ruleIDs.count(rule.id) > 0) rules.push_back(rule);
    if (rules.empty()) return;
    const bool refinesOrbStack = ruleIDs.count(std::string(kOrbStackRule)) > 0;
    WorkPool::shared().start([this, inbox = inbox_, scanRules = services_.scan, rules = std::move(rules), refinesOrbStack] {
        scanRules(rules, [&](RuleScanResult result) {
            inbox->post([this, result = std::move(result)]() mutable { apply(std::move(result)); });
        });
        inbox->post([this, refinesOrbStack] {
            pruneSelection();
            if (refinesOrbStack) refineOrbStackIfNeeded(false);
        });
    });
}

void AppModel::apply(RuleScanResult result) {
    assertOnOwnThread();
    const auto position =
        std::find_if(results_.begin(), results_.end(), [&](const auto& r) { return r.rule.id == result.rule.id; });
    // A plain scan of the OrbStack disks must not wipe out the Docker breakdown on screen: the fresh
    // disk entries wait for a refinement instead.
    if (result.rule.id == kOrbStackRule && position != results_.end() && holdsDockerRow(position->entries) &&
        !holdsDockerRow(result.entries)) {
        assign(pendingOrbStackDiskEntries_, OptionalEntries(std::move(result.entries)),
               &AppModel::pendingOrbStackDiskEntriesChanged);
        refineOrbStackIfNeeded(false);
        return;
    }
    if (position == results_.end()) {
        indexed_.push_back(indexOf(result));
        results_.push_back(std::move(result));
    } else {
        const auto i = static_cast<std::size_t>(position - results_.begin());
        indexed_[i] = indexOf(result, &results_[i], &indexed_[i]);
        results_[i] = std::move(result);
    }
    Q_EMIT resultsChanged();
}

void AppModel::replaceEntries(std::size_t position, std::vector<ScanEntry> entries) {
    RuleScanResult replaced{results_[position].rule, std::move(entries)};
    indexed_[position] = indexOf(replaced, &results_[position], &indexed_[position]);
    results_[position] = std::move(replaced);
    Q_EMIT resultsChanged();
}

} // namespace lumabroom
