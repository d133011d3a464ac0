#include "scan/CacheScanner.h"

#include "host/DirectoryReader.h"
#include "host/FileSystem.h"
#include "host/Paths.h"
#include "host/TempFolders.h"
#include "scan/DirectorySizer.h"
#include "scan/PathExpander.h"
#include "scan/WorkerPool.h"

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
};

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
    state_->changed.wait(guard, [&] {
        return state_->cancelled.load() || !state_->ready.empty() || state_->outstanding == 0;
    });
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
    std::stable_sort(entries.begin(), entries.end(), [](const ScanEntry& a, const ScanEntry& b) { return a.size > b.size; });
    return {rule, std::move(entries)};
}

ScanStream scan(std::vector<CleanRule> rules, RouteTable routes) {
    auto state = std::make_shared<ScanStream::State>();
    state->outstanding = rules.size();
    state->routes = std::move(routes);
    for (auto& rule : rules) {
        WorkerPool::submit([state, rule = std::move(rule)] {
            std::optional<RuleScanResult> result;
            if (!state->cancelled.load()) {
                Cancellation::Scope scope(&state->cancelled);
                result = scanRule(rule, state->routes);
            }
            {
                std::lock_guard guard(state->mutex);
                --state->outstanding;
                if (result && !state->cancelled.load()) state->ready.push_back(std::move(*result));
            }
            state->changed.notify_all();
        });
    }
    return ScanStream(std::move(state));
}

} // namespace CacheScanner
} // namespace lumabroom
