#pragma once

#include "AppModel.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace lumabroom::test {

// Processes events until `condition` holds; false once `limit` has passed.
bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit = std::chrono::seconds(20));
// Processes the events that are due, so that an outcome that should not come has had its chance.
void settle();

// Holds a worker until the test opens it.
class Gate {
public:
    void open();
    void wait();

private:
    std::mutex lock_;
    std::condition_variable opened_;
    bool isOpen_ = false;
};

CleanRule makeRule(std::string id, Category category, SafetyLevel safety, std::vector<std::string> paths = {});
RuleScanResult makeResult(CleanRule rule, std::vector<std::pair<std::string, std::int64_t>> entries);

// What the fake services saw, shared with the workers.
struct ServiceLog {
    std::mutex lock;
    std::vector<std::set<std::string>> scans; // the rule ids of each scan and rescan
    int diskReads = 0;
    std::vector<std::chrono::milliseconds> sleeps;

    std::vector<std::set<std::string>> scansSoFar();
};

// Live services over the given rules, with a fixed disk, no sleeping, and a discovery that finds
// nothing; each scan is logged.
ModelServices testServices(std::vector<CleanRule> rules, const std::shared_ptr<ServiceLog>& log);

// Counts the emissions of one of the model's signals.
struct SignalCount {
    template <class Signal>
    SignalCount(AppModel& model, Signal signal) {
        QObject::connect(&model, signal, &model, [this] { ++count; });
    }
    int count = 0;
};

} // namespace lumabroom::test
