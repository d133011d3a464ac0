#pragma once

#include "AppModel.h"

#include <QPointer>
#include <QWidget>

#include <optional>
#include <set>
#include <string>

class QMessageBox;
class QScrollArea;
class QVBoxLayout;

namespace lumabroom {

// One rule in the right-hand panel: what it is, what it found and what can be done with it. The
// panel reads the model whenever it draws and keeps only its own view state: which dialog is up,
// which lists are unfolded and which sessions are ticked. That state is dropped when the panel
// goes or is shown for another rule.
class RuleDetailPanel : public QWidget {
    Q_OBJECT
public:
    RuleDetailPanel(AppModel& model, std::string ruleID, QWidget* parent = nullptr);

    // Shows another rule with fresh view state and starts the loads that rule needs.
    void showRule(std::string ruleID);
    const std::string& ruleID() const { return ruleID_; }

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct ViewState {
        bool confirmVolumePrune = false;
        std::optional<DockerItem> pendingDelete;
        std::optional<ScanEntry> pendingModelDelete;
        std::optional<ScanEntry> pendingSessionDelete;
        std::set<std::string> selectedSessionIDs;
        bool confirmBatchSessionDelete = false;
        bool entriesExpanded = false;
        std::optional<WorktreeInfo> pendingWorktreeDelete;
        bool imagesExpanded = true;
        bool containersExpanded = false;
        bool volumesExpanded = true;
    };

    // The rule's result, or the rule with nothing found while no result has come in yet.
    std::optional<RuleScanResult> current() const;
    void startLoads();
    void scheduleRebuild();
    void rebuild();

    QWidget* backRow(const RuleScanResult& result);
    QWidget* header(const RuleScanResult& result);
    QWidget* orbStackLoadingBanner();
    QWidget* orbStackOffBanner();
    QWidget* reportOnlyBox(const RuleScanResult& result);
    QWidget* maintenanceCard(const MaintenanceCommand& command);
    QWidget* emptyState(std::string_view title, std::string_view description);
    // Whether the scheme the panel is shown in is the light one.
    bool light() const;
    QWidget* selectionBar(const RuleScanResult& result);
    QWidget* entriesCard(const RuleScanResult& result);
    QWidget* entryRow(const RuleScanResult& result, const ScanEntry& entry, std::int64_t maxSize);
    QWidget* dockerActionsCard(const RuleScanResult& result);
    QWidget* inventory();
    QWidget* inventorySection(std::string_view title, const std::vector<DockerItem>& items, bool ViewState::*expanded);
    QWidget* worktreeSection(const RuleScanResult& result);
    QWidget* worktreeRow(const RuleScanResult& result, const WorktreeInfo& info, std::int64_t maxSize);
    QWidget* topSessionsBar();
    QWidget* topSessionsCard();
    std::vector<ScanEntry> selectedTopSessions() const;

    // Sets one piece of pending state and puts up its dialog.
    void askEntryDelete(const ScanEntry& entry);
    void askVolumePrune();
    void askDockerItemDelete(const DockerItem& item);
    void askWorktreeRemoval(const WorktreeInfo& worktree);
    void askSessionDelete(const ScanEntry& entry);
    void askBatchSessionDelete();
    void goBack();

    AppModel& model_;
    std::string ruleID_;
    ViewState state_;
    QScrollArea* scroll_;
    QWidget* entriesCard_ = nullptr;
    bool scrollToEntries_ = false;
    bool rebuildPending_ = false;
    QPointer<QMessageBox> dialog_;
};

} // namespace lumabroom
