#include "AppModel.h"

#include "DisplayName.h"

#include "catalogue/BuiltinScan.h"
#include "agents/AgentSessions.h"
#include "agents/ClaudeProjects.h"
#include "agents/CodexWorktreeLister.h"
#include "host/Paths.h"
#include "scan/BuiltinRules.h"
#include "tools/DockerItemRemover.h"
#include "tools/DockerUsageLister.h"
#include "tools/OllamaModelLister.h"
#include "tools/OrbStackRefresher.h"
#include "tools/SimulatorDevices.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>

#ifdef __APPLE__
#include <QProcess>
#endif

#include <algorithm>
#include <cassert>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace lumabroom {

namespace {

constexpr std::string_view kOrbStackRule = "tool.orbstack";
constexpr std::string_view kDockerRule = "tool.docker";
constexpr std::string_view kWorktreeRule = "tool.codex-worktrees";
constexpr std::string_view kClaudeSessionsRule = "code.claude-sessions";
constexpr std::string_view kSimulatorRule = "xcode.simulator-devices";
constexpr std::string_view kOllamaRule = "tool.ollama";
constexpr std::size_t kTopSessionLimit = 10;
constexpr int kOrbStackPolls = 40;
// Paths no result holds that may stay numbered before a pruning renumbers the rest.
constexpr std::size_t kSpareKeys = 4096;

const QEvent::Type kInboxEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

// A fixed set of threads for the model's blocking work. It lives as long as the process and its
// threads are never joined: a quit must not wait for a tool that may run ten minutes.
class WorkPool {
public:
    static WorkPool& shared() {
        static WorkPool& pool = *new WorkPool(8);
        return pool;
    }

    void start(std::function<void()> job) {
        {
            std::lock_guard guard(lock_);
            jobs_.push_back(std::move(job));
        }
        wake_.notify_one();
    }

private:
    explicit WorkPool(int threads) {
        for (int i = 0; i < threads; ++i) std::thread([this] { work(); }).detach();
    }

    [[noreturn]] void work() {
        for (;;) {
            std::function<void()> job;
            {
                std::unique_lock guard(lock_);
                wake_.wait(guard, [this] { return !jobs_.empty(); });
                job = std::move(jobs_.front());
                jobs_.pop_front();
            }
            job();
        }
    }

    std::mutex lock_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> jobs_;
};

bool holdsDockerRow(const std::vector<ScanEntry>& entries) { return OrbStackRefresher::isRefined(entries); }

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

// Outcomes of the pool's work on their way to the model's thread. The queue, not the event, carries
// them, so that every hand-over goes through one lock that the thread checkers see. The one wake-up
// event is made on the model's thread and only posted by the workers: an event made on one thread
// and freed on another would hand memory over behind the checkers' back.
class AppModel::Inbox {
public:
    explicit Inbox(AppModel* model) : model_(model), wakeUp_(std::make_unique<QEvent>(kInboxEvent)) {}

    void post(std::function<void()> call) {
        std::lock_guard guard(lock_);
        if (!model_) return;
        calls_.push_back(std::move(call));
        // Without the event, a wake-up is under way and will find this call too.
        if (wakeUp_) QCoreApplication::postEvent(model_, wakeUp_.release());
    }

    // On the model's thread, when the wake-up has arrived.
    std::deque<std::function<void()>> take() {
        std::lock_guard guard(lock_);
        if (!wakeUp_) wakeUp_ = std::make_unique<QEvent>(kInboxEvent);
        return std::exchange(calls_, {});
    }

    void close() {
        std::deque<std::function<void()>> dropped;
        std::lock_guard guard(lock_);
        model_ = nullptr;
        wakeUp_.reset();
        dropped.swap(calls_);
    }

private:
    std::mutex lock_;
    AppModel* model_;
    std::unique_ptr<QEvent> wakeUp_;
    std::deque<std::function<void()>> calls_;
};

ModelServices ModelServices::live() {
    ModelServices services;
    for (const CleanRule& rule : BuiltinRules::all())
        if (rule.id != kWorktreeRule) services.scanRules.push_back(rule);
    services.scan = [](const std::vector<CleanRule>& rules, const ResultSink& sink) {
        ScanStream stream = CacheScanner::scan(rules);
        while (auto result = stream.next()) sink(std::move(*result));
    };
    services.diskSpace = [] { return DiskSpace::current(Paths::homeDirectory()); };
    services.discoverWorktrees = [](const WorktreeDiscovery::UpdateCallback& onUpdate) {
        WorktreeDiscovery::discover(onUpdate);
    };
    services.clean = [](const std::vector<ScanEntry>& entries, CleanMethod method) {
        return Cleaner::clean(entries, method, false);
    };
    services.launchOrbStack = [] {
#ifdef __APPLE__
        QProcess::startDetached(QStringLiteral("/usr/bin/open"), {QStringLiteral("-a"), QStringLiteral("OrbStack")});
#endif
        // Elsewhere there is no OrbStack to open: the docker daemon is a system service, so the
        // start only waits for its socket.
    };
    services.sleep = [](std::chrono::milliseconds duration) { std::this_thread::sleep_for(duration); };
    return services;
}

AppModel::AppModel(ModelServices services, QObject* parent)
    : QObject(parent), services_(std::move(services)), inbox_(std::make_shared<Inbox>(this)),
      collapsedCategories_(allCategories.begin(), allCategories.end()) {}

AppModel::~AppModel() { inbox_->close(); }

bool AppModel::event(QEvent* event) {
    if (event->type() != kInboxEvent) return QObject::event(event);
    for (auto& call : inbox_->take()) call();
    return true;
}

void AppModel::assertOnOwnThread() const {
    assert(QThread::currentThread() == thread() && "the model is used on its own thread only");
}

template <class Field, class Signal>
void AppModel::assign(Field& field, Field value, Signal signal) {
    assertOnOwnThread();
    const bool changed = !(field == value);
    field = std::move(value);
    if (changed) emit(this->*signal)();
}

template <class Field, class Signal>
void AppModel::assignAndNotify(Field& field, Field value, Signal signal) {
    assertOnOwnThread();
    field = std::move(value);
    emit(this->*signal)();
}

template <class Work, class Done>
void AppModel::offMainThread(Work work, Done done) {
    WorkPool::shared().start([inbox = inbox_, work = std::move(work), done = std::move(done)]() mutable {
        auto outcome = work();
        inbox->post([done = std::move(done), outcome = std::move(outcome)]() mutable { done(std::move(outcome)); });
    });
}

// Fields

AppModel::IDSet AppModel::selectedEntryIDs() const {
    IDSet ids = selectedElsewhere_;
    for (Key key = 0; key < selected_.size(); ++key)
        if (selected_[key]) ids.insert(pathOfKey_[key]);
    return ids;
}

void AppModel::setRoute(Route route) { assign(route_, std::move(route), &AppModel::routeChanged); }

void AppModel::setShowEmptyRules(bool show) { assign(showEmptyRules_, show, &AppModel::showEmptyRulesChanged); }

void AppModel::setSelectedEntryIDs(const IDSet& ids) {
    assertOnOwnThread();
    if (ids == selectedEntryIDs()) return;
    std::fill(selected_.begin(), selected_.end(), std::uint8_t{0});
    selectedKeyCount_ = 0;
    selectedElsewhere_.clear();
    for (const std::string& id : ids) {
        const auto found = keyOfPath_.find(id);
        if (found == keyOfPath_.end()) selectedElsewhere_.insert(id);
        else setKeySelected(found->second, true);
    }
    emit selectedEntryIDsChanged();
}

void AppModel::setSummary(ActionSummary summary) {
    assign(lastSummary_, OptionalSummary(std::move(summary)), &AppModel::lastSummaryChanged);
}

// The selection index

AppModel::Key AppModel::intern(const std::string& path) {
    const auto [found, added] = keyOfPath_.try_emplace(path, static_cast<Key>(pathOfKey_.size()));
    if (!added) return found->second;
    pathOfKey_.push_back(path);
    selected_.push_back(0);
    // An id selected before any result held it becomes a flag like the others.
    if (!selectedElsewhere_.empty() && selectedElsewhere_.erase(path) > 0) setKeySelected(found->second, true);
    return found->second;
}

AppModel::Indexed AppModel::indexOf(const RuleScanResult& result, const RuleScanResult* previous,
                                    const Indexed* previousIndexed) {
    Indexed indexed;
    indexed.keys.reserve(result.entries.size());
    indexed.sizes.reserve(result.entries.size());
    for (std::size_t j = 0; j < result.entries.size(); ++j) {
        const std::string& path = result.entries[j].url.native();
        // A rescan mostly finds what the last one found, in the same places of the list: comparing
        // with the old entry there is cheaper than a lookup.
        const bool same = previous && j < previous->entries.size() && previous->entries[j].url.native() == path;
        indexed.keys.push_back(same ? previousIndexed->keys[j] : intern(path));
        const ScanEntry& entry = result.entries[j];
        indexed.sizes.push_back(entry.size);
        indexed.total += entry.size;
    }
    return indexed;
}

const AppModel::Indexed* AppModel::indexedOf(const RuleScanResult& result) const {
    if (results_.empty() || &result < results_.data() || &result >= results_.data() + results_.size()) return nullptr;
    return &indexed_[static_cast<std::size_t>(&result - results_.data())];
}

std::vector<AppModel::Key> AppModel::keysOf(const RuleScanResult& result) {
    if (const Indexed* indexed = indexedOf(result)) return indexed->keys;
    std::vector<Key> keys;
    keys.reserve(result.entries.size());
    for (const ScanEntry& entry : result.entries) keys.push_back(intern(entry.url.native()));
    return keys;
}

bool AppModel::isPathSelected(const std::string& path) const {
    const auto found = keyOfPath_.find(path);
    return found == keyOfPath_.end() ? selectedElsewhere_.count(path) > 0 : selected_[found->second] != 0;
}

bool AppModel::isSelected(const std::string& entryID) const { return isPathSelected(entryID); }

void AppModel::setKeySelected(Key key, bool selected) {
    if ((selected_[key] != 0) == selected) return;
    selected_[key] = selected ? 1 : 0;
    selectedKeyCount_ += selected ? 1 : -1;
}

// Derived values

std::int64_t AppModel::totalBytes() const {
    std::int64_t sum = 0;
    for (const Indexed& indexed : indexed_) sum += indexed.total;
    return sum;
}

std::int64_t AppModel::directlyCleanableBytes() const {
    std::int64_t sum = 0;
    for (std::size_t i = 0; i < results_.size(); ++i)
        if (results_[i].rule.safety != SafetyLevel::reportOnly) sum += indexed_[i].total;
    return sum;
}

std::int64_t AppModel::selectedBytes() const {
    if (selectedKeyCount_ == 0) return 0;
    std::int64_t sum = 0;
    for (const Indexed& indexed : indexed_)
        for (std::size_t j = 0; j < indexed.keys.size(); ++j)
            if (selected_[indexed.keys[j]]) sum += indexed.sizes[j];
    return sum;
}

std::int64_t AppModel::selectedEntryCount() const {
    if (selectedKeyCount_ == 0) return 0;
    std::int64_t count = 0;
    for (const Indexed& indexed : indexed_)
        for (Key key : indexed.keys) count += selected_[key];
    return count;
}

std::int64_t AppModel::categoryBytes(Category category) const {
    std::int64_t sum = 0;
    for (std::size_t i = 0; i < results_.size(); ++i)
        if (results_[i].rule.category == category) sum += indexed_[i].total;
    return sum;
}

std::string AppModel::scanProgressText() const {
    return std::to_string(scannedRuleCount_) + "/" + std::to_string(services_.scanRules.size() + 1);
}

const RuleScanResult* AppModel::result(std::string_view ruleID) const {
    const auto found = std::find_if(results_.begin(), results_.end(), [&](const auto& r) { return r.rule.id == ruleID; });
    return found == results_.end() ? nullptr : &*found;
}

std::vector<VisibleGroup> AppModel::visibleGroups() const {
    std::vector<VisibleGroup> groups;
    for (Category category : allCategories) {
        std::vector<std::size_t> members;
        for (std::size_t i = 0; i < results_.size(); ++i)
            if (results_[i].rule.category == category && (showEmptyRules_ || indexed_[i].total > 0)) members.push_back(i);
        if (members.empty()) continue;
        std::stable_sort(members.begin(), members.end(),
                         [&](std::size_t a, std::size_t b) { return indexed_[a].total > indexed_[b].total; });
        VisibleGroup group{category, {}, {}};
        for (std::size_t i : members) {
            group.results.push_back(&results_[i]);
            group.totals.push_back(indexed_[i].total);
        }
        groups.push_back(std::move(group));
    }
    return groups;
}

RuleSelection AppModel::selection(const RuleScanResult& result) const {
    if (result.entries.empty()) return RuleSelection::none;
    std::size_t count = 0;
    if (const Indexed* indexed = indexedOf(result)) {
        if (selectedKeyCount_ > 0)
            for (Key key : indexed->keys) count += selected_[key];
    } else {
        for (const ScanEntry& entry : result.entries) count += isPathSelected(entry.url.native()) ? 1 : 0;
    }
    if (count == 0) return RuleSelection::none;
    return count == result.entries.size() ? RuleSelection::all : RuleSelection::partial;
}

// Scanning

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

void AppModel::pruneSelection() {
    assertOnOwnThread();
    std::vector<std::uint8_t> held(selected_.size(), 0);
    for (const Indexed& indexed : indexed_)
        for (Key key : indexed.keys) held[key] = 1;
    bool changed = !selectedElsewhere_.empty();
    selectedElsewhere_.clear();
    std::size_t heldCount = 0;
    for (Key key = 0; key < selected_.size(); ++key) {
        heldCount += held[key];
        if (selected_[key] && !held[key]) {
            setKeySelected(key, false);
            changed = true;
        }
    }
    if (pathOfKey_.size() > 2 * heldCount + kSpareKeys) forgetPathsNotHeld(held);
    if (changed) emit selectedEntryIDsChanged();
}

// Paths that no result holds any more would pile up over many scans: renumber the ones that are
// left. Only after a pruning, when no such path is selected.
void AppModel::forgetPathsNotHeld(const std::vector<std::uint8_t>& held) {
    std::vector<Key> renumbered(pathOfKey_.size(), 0);
    std::vector<std::string> paths;
    std::vector<std::uint8_t> selected;
    for (Key key = 0; key < pathOfKey_.size(); ++key) {
        if (!held[key]) continue;
        renumbered[key] = static_cast<Key>(paths.size());
        paths.push_back(std::move(pathOfKey_[key]));
        selected.push_back(selected_[key]);
    }
    keyOfPath_.clear();
    for (Key key = 0; key < paths.size(); ++key) keyOfPath_.emplace(paths[key], key);
    for (Indexed& indexed : indexed_)
        for (Key& key : indexed.keys) key = renumbered[key];
    pathOfKey_ = std::move(paths);
    selected_ = std::move(selected);
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
    emit resultsChanged();
}

void AppModel::replaceEntries(std::size_t position, std::vector<ScanEntry> entries) {
    RuleScanResult replaced{results_[position].rule, std::move(entries)};
    indexed_[position] = indexOf(replaced, &results_[position], &indexed_[position]);
    results_[position] = std::move(replaced);
    emit resultsChanged();
}

// Selection and the bulk clean

void AppModel::toggleRule(const RuleScanResult& result) {
    assertOnOwnThread();
    if (result.rule.safety == SafetyLevel::reportOnly || result.entries.empty()) return;
    const bool select = selection(result) != RuleSelection::all;
    for (Key key : keysOf(result)) setKeySelected(key, select);
    emit selectedEntryIDsChanged();
}

void AppModel::toggleEntry(const RuleScanResult& result, const std::string& entryID) {
    assertOnOwnThread();
    if (result.rule.safety == SafetyLevel::reportOnly) return;
    const auto found = keyOfPath_.find(entryID);
    if (found != keyOfPath_.end()) setKeySelected(found->second, !selected_[found->second]);
    else if (selectedElsewhere_.erase(entryID) == 0) selectedElsewhere_.insert(entryID);
    emit selectedEntryIDsChanged();
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
    for (std::size_t i = 0; i < results_.size(); ++i) {
        const bool cleanable = results_[i].rule.safety != SafetyLevel::reportOnly;
        for (std::size_t j = 0; j < results_[i].entries.size(); ++j) {
            if (!selected_[indexed_[i].keys[j]]) continue;
            touchedRules.insert(results_[i].rule.id);
            if (cleanable) chosen.push_back(results_[i].entries[j]);
        }
    }
    if (chosen.empty()) return;
    assign(isBusy_, true, &AppModel::isBusyChanged);
    offMainThread([clean = services_.clean, chosen = std::move(chosen), method] { return clean(chosen, method); },
                  [this, method, touchedRules = std::move(touchedRules)](CleanResult outcome) {
                      setSummary({ActionSummary::Cleaned{outcome.freedBytes, method == CleanMethod::trash,
                                                         static_cast<std::int64_t>(outcome.failures.size())}});
                      setSelectedEntryIDs({});
                      assign(isBusy_, false, &AppModel::isBusyChanged);
                      assign(diskSpace_, services_.diskSpace(), &AppModel::diskSpaceChanged);
                      rescanRules(touchedRules);
                  });
}

// Per-item actions

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
    offMainThread(
        [entries] {
            ActionSummary::Cleaned outcome{0, true, 0};
            for (const ScanEntry& entry : entries) {
                if (AgentSessions::remove(entry.url)) outcome.bytes += entry.size;
                else ++outcome.failures;
            }
            return outcome;
        },
        [this, ruleID](ActionSummary::Cleaned outcome) {
            setSummary({outcome});
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

// Worktrees

void AppModel::loadWorktrees(bool force) { discoverWorktrees(force, {}); }

void AppModel::discoverWorktrees(bool force, std::function<void()> ended) {
    assertOnOwnThread();
    if ((!force && worktrees_) || isLoadingWorktrees_) {
        if (ended) ended();
        return;
    }
    assign(isLoadingWorktrees_, true, &AppModel::isLoadingWorktreesChanged);
    WorkPool::shared().start([this, inbox = inbox_, discover = services_.discoverWorktrees, ended = std::move(ended)] {
        discover([&](const std::vector<WorktreeInfo>& list) {
            inbox->post([this, list] {
                assignAndNotify(worktrees_, OptionalWorktrees(list), &AppModel::worktreesChanged);
                applyWorktreeEntries();
            });
        });
        inbox->post([this, ended] {
            assign(isLoadingWorktrees_, false, &AppModel::isLoadingWorktreesChanged);
            if (ended) ended();
        });
    });
}

void AppModel::applyWorktreeEntries() {
    assertOnOwnThread();
    if (!worktrees_) return;
    const CleanRule* rule = BuiltinRules::find(kWorktreeRule);
    if (!rule) return;
    RuleScanResult result{*rule, {}};
    for (const WorktreeInfo& worktree : *worktrees_) result.entries.push_back({worktree.path, worktree.size.value_or(0), {}});
    apply(std::move(result));
}

void AppModel::removeWorktree(const WorktreeInfo& worktree) {
    assertOnOwnThread();
    if (removingWorktreeID_) return;
    assign(removingWorktreeID_, OptionalText(worktree.id()), &AppModel::removingWorktreeIDChanged);
    offMainThread([worktree] { return CodexWorktreeLister::remove(worktree, worktree.isRisky()); },
                  [this, worktree](bool removed) {
                      assign(removingWorktreeID_, OptionalText(), &AppModel::removingWorktreeIDChanged);
                      if (!removed) {
                          setSummary({ActionSummary::WorktreeRemoveFailed{worktree.repoName}});
                          loadWorktrees(true);
                          return;
                      }
                      setSummary({ActionSummary::WorktreeRemoved{worktree.repoName, worktree.size.value_or(0)}});
                      if (worktrees_) {
                          std::vector<WorktreeInfo> kept;
                          for (const WorktreeInfo& other : *worktrees_)
                              if (other.path.native() != worktree.path.native()) kept.push_back(other);
                          assignAndNotify(worktrees_, OptionalWorktrees(std::move(kept)), &AppModel::worktreesChanged);
                      }
                      applyWorktreeEntries();
                  });
}

// Docker and OrbStack

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
                      assign(pendingOrbStackDiskEntries_, OptionalEntries(), &AppModel::pendingOrbStackDiskEntriesChanged);
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
