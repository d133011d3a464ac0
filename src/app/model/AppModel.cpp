#include "ModelWork.h"

#include "catalogue/BuiltinScan.h"
#include "host/Paths.h"
#include "scan/BuiltinRules.h"

#include <QThread>

#ifdef __APPLE__
#include <QProcess>
#endif

#include <algorithm>
#include <cassert>

namespace lumabroom {

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
    services.restore = [](const Trash::TrashedItem& item) { return Trash::restore(item); };
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
    : QObject(parent),
      services_(std::move(services)),
      inbox_(std::make_shared<Inbox>(this)),
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

// Fields

AppModel::IDSet AppModel::selectedEntryIDs() const {
    IDSet ids = selectedElsewhere_;
    for (Key key = 0; key < selected_.size(); ++key)
        if (selected_[key]) ids.insert(std::string(paths_.path(key)));
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
        const auto key = paths_.find(id);
        if (key) setKeySelected(*key, true);
        else selectedElsewhere_.insert(id);
    }
    Q_EMIT selectedEntryIDsChanged();
}

void AppModel::setSummary(ActionSummary summary) {
    assign(lastSummary_, OptionalSummary(std::move(summary)), &AppModel::lastSummaryChanged);
    offerUndo({}, {});
}

void AppModel::offerUndo(std::vector<CleanResult::Trashed> items, std::set<std::string> ruleIDs) {
    const bool could = canUndo();
    undoItems_ = std::move(items);
    undoRuleIDs_ = std::move(ruleIDs);
    if (could != canUndo()) Q_EMIT canUndoChanged();
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
    const auto found =
        std::find_if(results_.begin(), results_.end(), [&](const auto& r) { return r.rule.id == ruleID; });
    return found == results_.end() ? nullptr : &*found;
}

std::vector<VisibleGroup> AppModel::visibleGroups() const {
    std::vector<VisibleGroup> groups;
    for (Category category : allCategories) {
        std::vector<std::size_t> members;
        for (std::size_t i = 0; i < results_.size(); ++i)
            if (results_[i].rule.category == category && (showEmptyRules_ || indexed_[i].total > 0))
                members.push_back(i);
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

} // namespace lumabroom
