#include "ModelWork.h"

#include "DisplayName.h"

#include "agents/AgentSessions.h"
#include "agents/ClaudeProjects.h"
#include "tools/OllamaModelLister.h"
#include "tools/SimulatorDevices.h"

namespace lumabroom {

namespace {

constexpr std::size_t kTopSessionLimit = 10;

std::vector<ScanEntry> largestSessions(const std::string& ruleID) {
    return ruleID == kClaudeSessionsRule ? AgentSessions::largestClaudeSessions(kTopSessionLimit)
                                         : AgentSessions::largestCodexSessions(kTopSessionLimit);
}

std::set<std::string> pathsOf(const std::vector<ScanEntry>& entries) {
    std::set<std::string> paths;
    for (const ScanEntry& entry : entries) paths.insert(entry.url.native());
    return paths;
}

} // namespace

void AppModel::runMaintenance(const MaintenanceCommand& command) {
    assertOnOwnThread();
    if (runningCommandRuleID_ || isBusy_) return;
    assign(runningCommandRuleID_, OptionalText(command.id), &AppModel::runningCommandRuleIDChanged);
    offMainThread([command] { return MaintenanceCommands::run(command); },
                  [this, command](bool ran) {
                      if (ran) setSummary({ActionSummary::MaintenanceRan{command.command}});
                      else setSummary({ActionSummary::MaintenanceFailed{command.command}});
                      assign(runningCommandRuleID_, OptionalText(), &AppModel::runningCommandRuleIDChanged);
                      rescanRules({command.id});
                  });
}

void AppModel::deleteSimulator(const ScanEntry& entry) {
    assertOnOwnThread();
    const auto udid = SimulatorDevices::udid(entry.url);
    if (!udid) return;
    offMainThread([udid = *udid] { return SimulatorDevices::remove(udid); },
                  [this, name = displayName(entry), bytes = entry.size](bool removed) {
                      if (removed) setSummary({ActionSummary::SimulatorDeleted{name, bytes}});
                      else setSummary({ActionSummary::SimulatorDeleteFailed{name}});
                      rescanRules({std::string(kSimulatorRule)});
                  });
}

void AppModel::deleteOllamaModel(const ScanEntry& entry) {
    assertOnOwnThread();
    const auto model = OllamaModelRemover::modelName(entry.url);
    if (!model) return;
    offMainThread([model = *model] { return OllamaModelRemover::remove(model); },
                  [this, name = *model, bytes = entry.size](bool removed) {
                      if (removed) setSummary({ActionSummary::OllamaModelDeleted{name, bytes}});
                      else setSummary({ActionSummary::OllamaModelDeleteFailed{name}});
                      rescanRules({std::string(kOllamaRule)});
                  });
}

void AppModel::deleteClaudeSessions(const ScanEntry& entry) {
    assertOnOwnThread();
    offMainThread([url = entry.url] { return ClaudeProjects::removeSessions(url); },
                  [this, name = displayName(entry), bytes = entry.size](bool removed) {
                      if (removed) setSummary({ActionSummary::Cleaned{bytes, true, 0}});
                      else setSummary({ActionSummary::ClaudeSessionsDeleteFailed{name}});
                      rescanRules({std::string(kClaudeSessionsRule)});
                  });
}

void AppModel::deleteSessionFile(const ScanEntry& entry, const std::string& ruleID) {
    assertOnOwnThread();
    const std::string name = displayName(entry);
    if (topSessions_) {
        std::vector<ScanEntry> kept;
        for (const ScanEntry& session : *topSessions_)
            if (session.url != entry.url) kept.push_back(session);
        assign(topSessions_, OptionalEntries(std::move(kept)), &AppModel::topSessionsChanged);
    }
    offMainThread([url = entry.url] { return AgentSessions::remove(url); },
                  [this, name, bytes = entry.size, ruleID](bool removed) {
                      if (removed) setSummary({ActionSummary::Cleaned{bytes, true, 0}});
                      else setSummary({ActionSummary::ClaudeSessionsDeleteFailed{name}});
                      rescanRules({ruleID});
                      refreshTopSessions(ruleID);
                  });
}

void AppModel::deleteSessionFiles(const std::vector<ScanEntry>& entries, const std::string& ruleID) {
    assertOnOwnThread();
    if (entries.empty()) return;
    if (topSessions_) {
        const std::set<std::string> gone = pathsOf(entries);
        std::vector<ScanEntry> kept;
        for (const ScanEntry& session : *topSessions_)
            if (gone.count(session.url.native()) == 0) kept.push_back(session);
        assign(topSessions_, OptionalEntries(std::move(kept)), &AppModel::topSessionsChanged);
    }
    struct Outcome {
        ActionSummary::Cleaned summary{0, true, 0};
        std::vector<CleanResult::Trashed> trashed;
    };
    offMainThread(
        [entries] {
            Outcome outcome;
            for (const ScanEntry& entry : entries) {
                auto moved = AgentSessions::moveToTrash(entry.url);
                if (moved.failure) {
                    ++outcome.summary.failures;
                    continue;
                }
                outcome.summary.bytes += entry.size;
                if (moved.trashed) outcome.trashed.push_back({entry.url, entry.size, std::move(*moved.trashed)});
            }
            return outcome;
        },
        [this, ruleID](Outcome outcome) {
            setSummary({outcome.summary});
            offerUndo(std::move(outcome.trashed), {ruleID});
            rescanRules({ruleID});
            refreshTopSessions(ruleID);
        });
}

void AppModel::loadTopSessions(const std::string& ruleID) {
    assertOnOwnThread();
    assign(topSessions_, OptionalEntries(), &AppModel::topSessionsChanged);
    assign(isLoadingTopSessions_, true, &AppModel::isLoadingTopSessionsChanged);
    offMainThread([ruleID] { return largestSessions(ruleID); },
                  [this](std::vector<ScanEntry> sessions) {
                      assign(topSessions_, OptionalEntries(std::move(sessions)), &AppModel::topSessionsChanged);
                      assign(isLoadingTopSessions_, false, &AppModel::isLoadingTopSessionsChanged);
                  });
}

// Unlike a load, a refresh leaves the list up until the new one is there, so the card doesn't
// flicker into its loading state.
void AppModel::refreshTopSessions(const std::string& ruleID) {
    offMainThread([ruleID] { return largestSessions(ruleID); },
                  [this](std::vector<ScanEntry> sessions) {
                      assign(topSessions_, OptionalEntries(std::move(sessions)), &AppModel::topSessionsChanged);
                  });
}

} // namespace lumabroom
