#include "ModelWork.h"

#include "tools/DockerItemRemover.h"
#include "tools/DockerUsageLister.h"

namespace lumabroom {

namespace {

constexpr int kOrbStackPolls = 40;

} // namespace

void AppModel::refineOrbStackIfNeeded(bool force) {
    assertOnOwnThread();
    if (isRefiningOrbStack_) return;
    const RuleScanResult* current = result(kOrbStackRule);
    if (!current) return;
    const bool unrefined = !holdsDockerRow(current->entries);
    std::vector<ScanEntry> diskEntries;
    if (pendingOrbStackDiskEntries_) {
        diskEntries = *pendingOrbStackDiskEntries_;
    } else {
        for (const ScanEntry& entry : current->entries)
            if (entry.url.native().find("/docker/") == std::string::npos) diskEntries.push_back(entry);
    }
    if (diskEntries.empty()) return;
    if (!force && !unrefined && !pendingOrbStackDiskEntries_) return;
    assign(isRefiningOrbStack_, true, &AppModel::isRefiningOrbStackChanged);
    offMainThread([diskEntries = std::move(diskEntries)] { return OrbStackRefresher::refinedEntries(diskEntries); },
                  [this](std::optional<std::vector<ScanEntry>> refined) {
                      // Disk entries that arrived during the refinement count when the daemon gave nothing.
                      OptionalEntries fresh = refined ? std::move(refined) : pendingOrbStackDiskEntries_;
                      assign(pendingOrbStackDiskEntries_, OptionalEntries(),
                             &AppModel::pendingOrbStackDiskEntriesChanged);
                      const RuleScanResult* current = result(kOrbStackRule);
                      if (fresh && current)
                          replaceEntries(static_cast<std::size_t>(current - results_.data()), std::move(*fresh));
                      assign(isRefiningOrbStack_, false, &AppModel::isRefiningOrbStackChanged);
                  });
}

void AppModel::startOrbStack() {
    assertOnOwnThread();
    if (isStartingOrbStack_) return;
    assign(isStartingOrbStack_, true, &AppModel::isStartingOrbStackChanged);
    // The final wait gives the daemon time to settle after its socket appears; it runs here, off the
    // main thread, like the polling.
    offMainThread(
        [launch = services_.launchOrbStack, sleep = services_.sleep] {
            launch();
            for (int polls = 0; !DockerUsageLister::daemonAvailable();) {
                sleep(std::chrono::seconds(1));
                if (++polls == kOrbStackPolls) break;
            }
            sleep(std::chrono::seconds(2));
            return true;
        },
        [this](bool) {
            assign(isStartingOrbStack_, false, &AppModel::isStartingOrbStackChanged);
            refineOrbStackIfNeeded(true);
            loadDockerInventory(true);
        });
}

void AppModel::loadDockerInventory(bool force) {
    assertOnOwnThread();
    if ((!force && dockerInventory_) || isLoadingInventory_) return;
    assign(isLoadingInventory_, true, &AppModel::isLoadingInventoryChanged);
    offMainThread([] { return DockerInventoryLister::fetch(); },
                  [this](OptionalInventory inventory) {
                      assignAndNotify(dockerInventory_, std::move(inventory), &AppModel::dockerInventoryChanged);
                      assign(isLoadingInventory_, false, &AppModel::isLoadingInventoryChanged);
                  });
}

void AppModel::deleteDockerItem(const DockerItem& item) {
    assertOnOwnThread();
    if (pruningTarget_) return;
    offMainThread([item] { return DockerItemRemover::remove(item); },
                  [this, item](bool removed) {
                      if (removed) {
                          setSummary({ActionSummary::DockerItemDeleted{item.name, item.size}});
                          if (dockerInventory_)
                              assignAndNotify(dockerInventory_, OptionalInventory(dockerInventory_->removing(item)),
                                              &AppModel::dockerInventoryChanged);
                      } else {
                          setSummary({ActionSummary::DockerItemDeleteFailed{item.name}});
                      }
                      loadDockerInventory(true);
                      rescanRules({std::string(kOrbStackRule), std::string(kDockerRule)});
                  });
}

void AppModel::prune(DockerPruneTarget target) {
    assertOnOwnThread();
    if (isBusy_ || pruningTarget_) return;
    assign(pruningTarget_, OptionalPruneTarget(target), &AppModel::pruningTargetChanged);
    offMainThread([target] { return DockerPruner::prune(target); },
                  [this, target](std::optional<std::string> freed) {
                      if (freed) setSummary({ActionSummary::DockerPruned{target, *freed}});
                      else setSummary({ActionSummary::DockerPruneFailed{target}});
                      assign(pruningTarget_, OptionalPruneTarget(), &AppModel::pruningTargetChanged);
                      loadDockerInventory(true);
                      rescanRules({std::string(kOrbStackRule)});
                  });
}

} // namespace lumabroom
