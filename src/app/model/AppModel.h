#pragma once

#include "ActionSummary.h"
#include "PathInterner.h"
#include "Route.h"
#include "VisibleGroup.h"

#include "agents/WorktreeDiscovery.h"
#include "agents/WorktreeInfo.h"
#include "clean/Cleaner.h"
#include "clean/MaintenanceCommands.h"
#include "scan/Category.h"
#include "scan/CleanRule.h"
#include "scan/RuleScanResult.h"
#include "scan/ScanEntry.h"
#include "text/DiskSpace.h"
#include "tools/DockerInventoryLister.h"
#include "tools/DockerPruner.h"

#include <QObject>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace lumabroom {

// The blocking steps of the model, each run off the main thread. live() gives the real ones; tests
// replace single steps to hold a scan half way or to count sleeps.
struct ModelServices {
    using ResultSink = std::function<void(RuleScanResult)>;

    // What a full scan hands to the scanner.
    std::vector<CleanRule> scanRules;
    // Scans the rules and hands over each result as it is ready; returns at the end.
    std::function<void(const std::vector<CleanRule>&, const ResultSink&)> scan;
    std::function<std::optional<DiskSpace>()> diskSpace;
    std::function<void(const WorktreeDiscovery::UpdateCallback&)> discoverWorktrees;
    std::function<CleanResult(const std::vector<ScanEntry>&, CleanMethod)> clean;
    // Puts one trashed item back: nothing, or the reason it stays in the Trash.
    std::function<std::optional<std::string>(const Trash::TrashedItem&)> restore;
    std::function<void()> launchOrbStack;
    std::function<void(std::chrono::milliseconds)> sleep;

    static ModelServices live();
};

// A result with what the model keeps of it beside its entries that needs nothing of the model,
// worked out on the thread that received it so that apply() does less on the main thread.
struct PreparedResult {
    RuleScanResult result;
    std::vector<std::uint64_t> hashes; // of each entry's path
    std::vector<std::int64_t> sizes;   // of each entry
    std::int64_t total = 0;

    explicit PreparedResult(RuleScanResult scanned);
};

// Everything the window shows and everything under way. One object, used on the thread that made
// it: every operation returns at once, blocking work runs on a pool of the model's own, and its
// outcome comes back as a queued call. Nothing is ever cancelled; work that ends after the model is
// gone drops its outcome.
class AppModel : public QObject {
    Q_OBJECT

public:
    using Results = std::vector<RuleScanResult>;
    using IDSet = std::set<std::string>;
    using CategorySet = std::set<Category>;
    using OptionalDiskSpace = std::optional<DiskSpace>;
    using OptionalSummary = std::optional<ActionSummary>;
    using OptionalText = std::optional<std::string>;
    using OptionalEntries = std::optional<std::vector<ScanEntry>>;
    using OptionalWorktrees = std::optional<std::vector<WorktreeInfo>>;
    using OptionalPruneTarget = std::optional<DockerPruneTarget>;
    using OptionalInventory = std::optional<DockerInventory>;

    Q_PROPERTY(Results results READ results NOTIFY resultsChanged)
    Q_PROPERTY(IDSet selectedEntryIDs READ selectedEntryIDs NOTIFY selectedEntryIDsChanged)
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY isBusyChanged)
    Q_PROPERTY(Route route READ route WRITE setRoute NOTIFY routeChanged)
    Q_PROPERTY(bool showEmptyRules READ showEmptyRules WRITE setShowEmptyRules NOTIFY showEmptyRulesChanged)
    Q_PROPERTY(int scannedRuleCount READ scannedRuleCount NOTIFY scannedRuleCountChanged)
    Q_PROPERTY(OptionalDiskSpace diskSpace READ diskSpace NOTIFY diskSpaceChanged)
    Q_PROPERTY(CategorySet collapsedCategories READ collapsedCategories NOTIFY collapsedCategoriesChanged)
    Q_PROPERTY(OptionalSummary lastSummary READ lastSummary NOTIFY lastSummaryChanged)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY canUndoChanged)
    Q_PROPERTY(bool isUndoing READ isUndoing NOTIFY isUndoingChanged)
    Q_PROPERTY(OptionalText runningCommandRuleID READ runningCommandRuleID NOTIFY runningCommandRuleIDChanged)
    Q_PROPERTY(OptionalEntries topSessions READ topSessions NOTIFY topSessionsChanged)
    Q_PROPERTY(bool isLoadingTopSessions READ isLoadingTopSessions NOTIFY isLoadingTopSessionsChanged)
    Q_PROPERTY(OptionalWorktrees worktrees READ worktrees NOTIFY worktreesChanged)
    Q_PROPERTY(bool isLoadingWorktrees READ isLoadingWorktrees NOTIFY isLoadingWorktreesChanged)
    Q_PROPERTY(OptionalText removingWorktreeID READ removingWorktreeID NOTIFY removingWorktreeIDChanged)
    Q_PROPERTY(OptionalPruneTarget pruningTarget READ pruningTarget NOTIFY pruningTargetChanged)
    Q_PROPERTY(OptionalInventory dockerInventory READ dockerInventory NOTIFY dockerInventoryChanged)
    Q_PROPERTY(bool isLoadingInventory READ isLoadingInventory NOTIFY isLoadingInventoryChanged)
    Q_PROPERTY(bool isStartingOrbStack READ isStartingOrbStack NOTIFY isStartingOrbStackChanged)
    Q_PROPERTY(bool isRefiningOrbStack READ isRefiningOrbStack NOTIFY isRefiningOrbStackChanged)
    Q_PROPERTY(OptionalEntries pendingOrbStackDiskEntries READ pendingOrbStackDiskEntries NOTIFY
                   pendingOrbStackDiskEntriesChanged)

    explicit AppModel(ModelServices services = ModelServices::live(), QObject* parent = nullptr);
    ~AppModel() override;

    // Fields.
    const Results& results() const { return results_; }
    // Built at each read from every path the model knows; per entry, isSelected() is the cheap way.
    IDSet selectedEntryIDs() const;
    bool isBusy() const { return isBusy_; }
    const Route& route() const { return route_; }
    bool showEmptyRules() const { return showEmptyRules_; }
    const std::vector<CleanRule>& scanRules() const { return services_.scanRules; }
    int scannedRuleCount() const { return scannedRuleCount_; }
    const OptionalDiskSpace& diskSpace() const { return diskSpace_; }
    const CategorySet& collapsedCategories() const { return collapsedCategories_; }
    const OptionalSummary& lastSummary() const { return lastSummary_; }
    // The last summary is of a clean to the Trash whose items can still be put back.
    bool canUndo() const { return !undoItems_.empty(); }
    bool isUndoing() const { return isUndoing_; }
    const OptionalText& runningCommandRuleID() const { return runningCommandRuleID_; }
    const OptionalEntries& topSessions() const { return topSessions_; }
    bool isLoadingTopSessions() const { return isLoadingTopSessions_; }
    const OptionalWorktrees& worktrees() const { return worktrees_; }
    bool isLoadingWorktrees() const { return isLoadingWorktrees_; }
    const OptionalText& removingWorktreeID() const { return removingWorktreeID_; }
    const OptionalPruneTarget& pruningTarget() const { return pruningTarget_; }
    const OptionalInventory& dockerInventory() const { return dockerInventory_; }
    bool isLoadingInventory() const { return isLoadingInventory_; }
    bool isStartingOrbStack() const { return isStartingOrbStack_; }
    bool isRefiningOrbStack() const { return isRefiningOrbStack_; }
    const OptionalEntries& pendingOrbStackDiskEntries() const { return pendingOrbStackDiskEntries_; }

    void setRoute(Route route);
    void setShowEmptyRules(bool show);
    void setSelectedEntryIDs(const IDSet& ids);

    // Derived values, computed at each read from the fields above.
    std::int64_t totalBytes() const;
    std::int64_t directlyCleanableBytes() const;
    std::int64_t selectedBytes() const;
    std::int64_t selectedEntryCount() const;
    std::int64_t categoryBytes(Category category) const;
    std::string scanProgressText() const;
    const RuleScanResult* result(std::string_view ruleID) const;
    std::vector<VisibleGroup> visibleGroups() const;
    RuleSelection selection(const RuleScanResult& result) const;
    bool isSelected(const std::string& entryID) const;

    // Scanning.
    void scan();
    void rescanRules(const std::set<std::string>& ruleIDs);
    void pruneSelection();
    // The one gate through which results enter `results`.
    void apply(RuleScanResult result);
    void apply(PreparedResult prepared);

    // Selection and the bulk clean.
    void toggleRule(const RuleScanResult& result);
    void toggleEntry(const RuleScanResult& result, const std::string& entryID);
    void toggleExpansion(Category category);
    void clean(CleanMethod method);
    // Puts back what the last clean to the Trash moved there and rescans the rules that held it.
    void undoLastClean();

    // Per-item actions.
    void runMaintenance(const MaintenanceCommand& command);
    void deleteSimulator(const ScanEntry& entry);
    void deleteOllamaModel(const ScanEntry& entry);
    void deleteClaudeSessions(const ScanEntry& entry);
    void deleteSessionFile(const ScanEntry& entry, const std::string& ruleID);
    void deleteSessionFiles(const std::vector<ScanEntry>& entries, const std::string& ruleID);
    void loadTopSessions(const std::string& ruleID);

    // Worktrees.
    void loadWorktrees(bool force);
    void applyWorktreeEntries();
    void removeWorktree(const WorktreeInfo& worktree);

    // Docker and OrbStack.
    void refineOrbStackIfNeeded(bool force);
    void startOrbStack();
    void loadDockerInventory(bool force);
    void deleteDockerItem(const DockerItem& item);
    void prune(DockerPruneTarget target);

Q_SIGNALS:
    void resultsChanged();
    void selectedEntryIDsChanged();
    void isBusyChanged();
    void routeChanged();
    void showEmptyRulesChanged();
    void scannedRuleCountChanged();
    void diskSpaceChanged();
    void collapsedCategoriesChanged();
    void lastSummaryChanged();
    void canUndoChanged();
    void isUndoingChanged();
    void runningCommandRuleIDChanged();
    void topSessionsChanged();
    void isLoadingTopSessionsChanged();
    void worktreesChanged();
    void isLoadingWorktreesChanged();
    void removingWorktreeIDChanged();
    void pruningTargetChanged();
    void dockerInventoryChanged();
    void isLoadingInventoryChanged();
    void isStartingOrbStackChanged();
    void isRefiningOrbStackChanged();
    void pendingOrbStackDiskEntriesChanged();

private:
    class Inbox;
    // Interned entry paths: the selection is a flag per path, so per-frame reads and toggles of tens
    // of thousands of entries hash no strings.
    using Key = PathInterner::Key;
    struct Indexed {
        std::int64_t total = 0;
        std::vector<Key> keys;           // per entry
        std::vector<std::int64_t> sizes; // per entry
    };

    bool event(QEvent* event) override;

    // Stores the value; notifies only when it differs, or always where the field says so.
    template <class Field, class Signal>
    void assign(Field& field, Field value, Signal signal);
    template <class Field, class Signal>
    void assignAndNotify(Field& field, Field value, Signal signal);
    void assertOnOwnThread() const;

    // Runs `work` on the pool and `done` with its outcome on this object's thread, unless the model
    // is gone by then.
    template <class Work, class Done>
    void offMainThread(Work work, Done done);

    Key intern(std::string_view path, std::uint64_t hash);
    // Makes `indexed`, the index of the result that `prepared` replaces (or an empty one), that of
    // `prepared`, taking its sizes.
    void reindex(PreparedResult& prepared, Indexed& indexed);
    // The keys of a result of the model's list, or of a copy of one.
    std::vector<Key> keysOf(const RuleScanResult& result);
    const Indexed* indexedOf(const RuleScanResult& result) const;
    bool isPathSelected(const std::string& path) const;
    void setKeySelected(Key key, bool selected);
    void forgetPathsNotHeld(const std::vector<std::uint8_t>& held);
    void replaceEntries(std::size_t position, std::vector<ScanEntry> entries);
    void place(std::size_t position, PreparedResult prepared);

    void scanPartEnded();
    void discoverWorktrees(bool force, std::function<void()> ended);
    void refreshTopSessions(const std::string& ruleID);
    // Every action's summary goes through here, which withdraws the offer to undo.
    void setSummary(ActionSummary summary);
    // After setSummary: what that clean to the Trash moved, and the rules that held it.
    void offerUndo(std::vector<CleanResult::Trashed> items, std::set<std::string> ruleIDs);

    ModelServices services_;
    std::shared_ptr<Inbox> inbox_;

    Results results_;
    bool isBusy_ = false;
    Route route_ = Route::overview();
    bool showEmptyRules_ = false;
    int scannedRuleCount_ = 0;
    OptionalDiskSpace diskSpace_;
    CategorySet collapsedCategories_;
    OptionalSummary lastSummary_;
    // Kept in memory only: an undo never outlives the process.
    std::vector<CleanResult::Trashed> undoItems_;
    std::set<std::string> undoRuleIDs_;
    bool isUndoing_ = false;
    OptionalText runningCommandRuleID_;
    OptionalEntries topSessions_;
    bool isLoadingTopSessions_ = false;
    OptionalWorktrees worktrees_;
    bool isLoadingWorktrees_ = false;
    OptionalText removingWorktreeID_;
    OptionalPruneTarget pruningTarget_;
    OptionalInventory dockerInventory_;
    bool isLoadingInventory_ = false;
    bool isStartingOrbStack_ = false;
    bool isRefiningOrbStack_ = false;
    OptionalEntries pendingOrbStackDiskEntries_;

    // The selection: a flag per interned path, plus ids that no result holds.
    PathInterner paths_;
    std::vector<std::uint8_t> selected_;
    std::int64_t selectedKeyCount_ = 0;
    std::set<std::string> selectedElsewhere_;
    std::vector<Indexed> indexed_; // parallel to results_

    int scanPartsRunning_ = 0; // the scanner's stream and worktree discovery of the running full scan
};

} // namespace lumabroom
