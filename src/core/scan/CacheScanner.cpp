#include "scan/CacheScanner.h"

#include "concurrency/Cancellation.h"
#include "concurrency/WorkerPool.h"
#include "host/DirectoryReader.h"
#include "host/FileSystem.h"
#include "host/Paths.h"
#include "host/TempFolders.h"
#include "scan/DirectorySizer.h"
#include "scan/PathExpander.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>

namespace lumabroom {

struct ScanStream::State {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<RuleScanResult> ready;
    std::size_t outstanding = 0;
    std::atomic<bool> cancelled{false};
    RouteTable routes;
    // Set for a push-style scan. Held while a callback runs, so that cancel() can wait for it;
    // recursive because the callback itself may cancel.
    CacheScanner::ResultHandler onResult;
    CacheScanner::EndHandler onEnd;
    std::recursive_mutex delivering;

    void finish(std::optional<RuleScanResult> result);
};

void ScanStream::State::finish(std::optional<RuleScanResult> result) {
    if (!onResult) {
        {
            std::lock_guard guard(mutex);
            --outstanding;
            if (result && !cancelled.load()) ready.push_back(std::move(*result));
        }
        changed.notify_all();
        return;
    }
    // Decrementing under `delivering` puts every other task's callback before the end.
    std::lock_guard deliver(delivering);
    if (result && !cancelled.load()) onResult(std::move(*result));
    bool last = false;
    {
        std::lock_guard guard(mutex);
        last = --outstanding == 0;
    }
    changed.notify_all();
    if (last && !cancelled.load() && onEnd) onEnd();
}

ScanStream::ScanStream(std::shared_ptr<State> state) : state_(std::move(state)) {}

ScanStream& ScanStream::operator=(ScanStream&& other) noexcept {
    if (this != &other) {
        cancel();
        state_ = std::move(other.state_);
    }
    return *this;
}

ScanStream::~ScanStream() { cancel(); }

std::optional<RuleScanResult> ScanStream::next() {
    if (!state_) return std::nullopt;
    std::unique_lock guard(state_->mutex);
    state_->changed.wait(
        guard, [&] { return state_->cancelled.load() || !state_->ready.empty() || state_->outstanding == 0; });
    if (state_->cancelled.load() || state_->ready.empty()) return std::nullopt;
    RuleScanResult result = std::move(state_->ready.front());
    state_->ready.pop_front();
    return result;
}

void ScanStream::cancel() {
    if (!state_) return;
    {
        std::lock_guard guard(state_->mutex);
        state_->cancelled.store(true);
        state_->ready.clear();
    }
    state_->changed.notify_all();
    if (state_->onResult) {
        std::lock_guard waitForCallback(state_->delivering);
    }
}

namespace CacheScanner {

RuleScanResult scanRule(const CleanRule& rule, const RouteTable& routes) {
    if (auto route = routes.find(rule.id); route != routes.end() && route->second) {
        if (auto entries = route->second()) return {rule, std::move(*entries)};
    }

    std::vector<std::filesystem::path> locations;
    for (const auto& pattern : rule.paths) {
        auto found = PathExpander::expand(pattern);
        locations.insert(locations.end(), std::make_move_iterator(found.begin()), std::make_move_iterator(found.end()));
    }
    if (rule.id == "sys.tmp-folders") locations = TempFolders::offered(std::move(locations));

    std::vector<std::optional<FileIdentity>> identities;
    identities.reserve(locations.size());
    for (const auto& location : locations) identities.push_back(identityOf(location.string()));
    auto sizes = DirectorySizer::sizes(locations, rule.exclusiveSizeOnly);
    std::vector<ScanEntry> entries;
    entries.reserve(locations.size());
    for (std::size_t i = 0; i < locations.size(); ++i)
        entries.push_back({std::move(locations[i]), sizes[i], std::nullopt, identities[i]});
    std::stable_sort(entries.begin(), entries.end(),
                     [](const ScanEntry& a, const ScanEntry& b) { return a.size > b.size; });
    return {rule, std::move(entries)};
}

namespace {
ScanStream start(std::vector<CleanRule> rules, std::shared_ptr<ScanStream::State> state) {
    state->outstanding = rules.size();
    if (rules.empty() && state->onEnd) state->onEnd();
    for (auto& rule : rules) {
        WorkerPool::submit([state, rule = std::move(rule)] {
            std::optional<RuleScanResult> result;
            if (!state->cancelled.load()) {
                Cancellation::Scope scope(&state->cancelled);
                result = scanRule(rule, state->routes);
            }
            state->finish(std::move(result));
        });
    }
    return ScanStream(std::move(state));
}
} // namespace

ScanStream scan(std::vector<CleanRule> rules, RouteTable routes) {
    auto state = std::make_shared<ScanStream::State>();
    state->routes = std::move(routes);
    return start(std::move(rules), std::move(state));
}

ScanStream scan(std::vector<CleanRule> rules, RouteTable routes, ResultHandler onResult, EndHandler onEnd) {
    auto state = std::make_shared<ScanStream::State>();
    state->routes = std::move(routes);
    // A scan that wants no results still reports its end.
    state->onResult = onResult ? std::move(onResult) : [](RuleScanResult) {};
    state->onEnd = std::move(onEnd);
    return start(std::move(rules), std::move(state));
}

} // namespace CacheScanner
} // namespace lumabroom
