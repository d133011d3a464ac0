#pragma once

#include "scan/CleanRule.h"
#include "scan/ScanRoutes.h"

#include <memory>
#include <optional>
#include <vector>

namespace lumabroom {

// The results of one scan, one per rule, in order of completion. Buffering is unbounded: a slow
// reader loses nothing and holds up nothing. Destroying the stream cancels the scan.
class ScanStream {
public:
    struct State;
    explicit ScanStream(std::shared_ptr<State> state);
    ScanStream(ScanStream&&) noexcept = default;
    ScanStream& operator=(ScanStream&&) noexcept;
    ~ScanStream();

    // Blocks until the next result; nothing once the last one was taken or after cancel().
    std::optional<RuleScanResult> next();

    // Ends the scan early: walks under way stop, rules not started are skipped, and no result
    // arrives after it returns. Does not wait for the workers.
    void cancel();

private:
    std::shared_ptr<State> state_;
};

namespace CacheScanner {

// Starts one task per rule on the worker pool and returns at once.
ScanStream scan(std::vector<CleanRule> rules, RouteTable routes = ScanRoutes::builtin());

// The result of one rule, measured on the calling thread: its own route if it has one and that
// gives a list, else its path patterns, sized and sorted largest first (stable).
RuleScanResult scanRule(const CleanRule& rule, const RouteTable& routes = ScanRoutes::builtin());

} // namespace CacheScanner
} // namespace lumabroom
