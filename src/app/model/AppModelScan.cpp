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
    workPool().submit([this, inbox = inbox_, scanRules = services_.scan, rules = services_.scanRules] {
        scanRules(rules, [&](RuleScanResult result) {
            inbox->post([this, prepared = PreparedResult(std::move(result))]() mutable {
                assign(scannedRuleCount_, scannedRuleCount_ + 1, &AppModel::scannedRuleCountChanged);
                apply(std::move(prepared));
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
    workPool().submit([this, inbox = inbox_, scanRules = services_.scan, rules = std::move(rules), refinesOrbStack] {
        scanRules(rules, [&](RuleScanResult result) {
            inbox->post([this, prepared = PreparedResult(std::move(result))]() mutable { apply(std::move(prepared)); });
        });
        inbox->post([this, refinesOrbStack] {
            pruneSelection();
            if (refinesOrbStack) refineOrbStackIfNeeded(false);
        });
    });
}

void AppModel::apply(RuleScanResult result) { apply(PreparedResult(std::move(result))); }

void AppModel::apply(PreparedResult prepared) {
    assertOnOwnThread();
    RuleScanResult& result = prepared.result;
    const auto position =
        std::find_if(results_.begin(), results_.end(), [&](const auto& r) { return r.rule.id == result.rule.id; });
    // A plain scan of the OrbStack disks must not wipe out the Docker breakdown on screen: the fresh
    // disk entries wait for a refinement instead.
    if (result.rule.id == kOrbStackRule && position != results_.end() && holdsDockerRow(position->entries)
        && !holdsDockerRow(result.entries)) {
        assign(pendingOrbStackDiskEntries_, OptionalEntries(std::move(result.entries)),
               &AppModel::pendingOrbStackDiskEntriesChanged);
        refineOrbStackIfNeeded(false);
        return;
    }
    place(static_cast<std::size_t>(position - results_.begin()), std::move(prepared));
}

void AppModel::replaceEntries(std::size_t position, std::vector<ScanEntry> entries) {
    place(position, PreparedResult({results_[position].rule, std::move(entries)}));
}

// At `position` of the list, or at its end as a new one.
void AppModel::place(std::size_t position, PreparedResult prepared) {
    if (position == results_.size()) {
        reindex(prepared, indexed_.emplace_back());
        results_.push_back(std::move(prepared.result));
    } else {
        std::vector<std::int64_t> oldSizes = std::move(indexed_[position].sizes);
        reindex(prepared, indexed_[position]);
        // Tens of thousands of paths take a while to free: the pool does it, and frees the large
        // arrays too, which would otherwise wait for the allocator's lock while it works.
        workPool().submit([old = std::move(results_[position].entries), oldSizes = std::move(oldSizes),
                           hashes = std::move(prepared.hashes)] {});
        results_[position] = std::move(prepared.result);
    }
    Q_EMIT resultsChanged();
}

} // namespace lumabroom
