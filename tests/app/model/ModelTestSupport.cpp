#include "ModelTestSupport.h"

#include <QCoreApplication>
#include <QThread>

namespace lumabroom::test {

bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(1);
    }
    return true;
}

void settle() {
    for (int i = 0; i < 20; ++i) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QThread::msleep(5);
    }
}

void Gate::open() {
    {
        std::lock_guard guard(lock_);
        isOpen_ = true;
    }
    opened_.notify_all();
}

void Gate::wait() {
    std::unique_lock guard(lock_);
    opened_.wait(guard, [this] { return isOpen_; });
}

CleanRule makeRule(std::string id, Category category, SafetyLevel safety, std::vector<std::string> paths) {
    CleanRule rule;
    rule.id = std::move(id);
    rule.nameKey = rule.id;
    rule.noteKey = rule.id;
    rule.category = category;
    rule.safety = safety;
    rule.paths = std::move(paths);
    return rule;
}

RuleScanResult makeResult(CleanRule rule, std::vector<std::pair<std::string, std::int64_t>> entries) {
    RuleScanResult result{std::move(rule), {}};
    for (auto& [path, size] : entries) result.entries.push_back({path, size, {}});
    return result;
}

std::vector<std::set<std::string>> ServiceLog::scansSoFar() {
    std::lock_guard guard(lock);
    return scans;
}

ModelServices testServices(std::vector<CleanRule> rules, const std::shared_ptr<ServiceLog>& log) {
    ModelServices services = ModelServices::live();
    services.scanRules = std::move(rules);
    services.scan = [log, live = services.scan](const std::vector<CleanRule>& scanned,
                                                const ModelServices::ResultSink& sink) {
        std::set<std::string> ids;
        for (const CleanRule& rule : scanned) ids.insert(rule.id);
        {
            std::lock_guard guard(log->lock);
            log->scans.push_back(ids);
        }
        live(scanned, sink);
    };
    services.diskSpace = [log] {
        std::lock_guard guard(log->lock);
        ++log->diskReads;
        return std::optional<DiskSpace>(DiskSpace{"Disk", 1000, 400});
    };
    services.discoverWorktrees = [](const WorktreeDiscovery::UpdateCallback& onUpdate) { onUpdate({}); };
    services.launchOrbStack = [] {};
    services.sleep = [log](std::chrono::milliseconds duration) {
        std::lock_guard guard(log->lock);
        log->sleeps.push_back(duration);
    };
    return services;
}

} // namespace lumabroom::test
