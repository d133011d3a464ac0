#pragma once

#include "scan/CleanRule.h"
#include "scan/RuleScanResult.h"
#include "scan/ScanRoute.h"

#include <functional>
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

    // Blocks until the next result; nothing once the last one was taken or after cancel(). A scan
    // that hands its results to callbacks buffers nothing, so here it only waits for the end.
    std::optional<RuleScanResult> next();

    // Ends the scan early: walks under way stop, rules not started are skipped, and no result
    // arrives after it returns. Does not wait for the workers, only for a callback in progress
    // (unless it is called from that callback).
    void cancel();

private:
    std::shared_ptr<State> state_;
};

namespace CacheScanner {

// Starts one task per rule on the worker pool and returns at once.
ScanStream scan(std::vector<CleanRule> rules, RouteTable routes);

using ResultHandler = std::function<void(RuleScanResult)>;
using EndHandler = std::function<void()>;

// The same scan, handing each result to `onResult` as it completes instead of buffering it, then
// calling `onEnd` once after the last one. Both run on worker threads, one call at a time (`onEnd`
// at once on the caller's thread when there is no rule), so a caller never parks a thread waiting. Neither is called once the returned stream was cancelled
// or destroyed; keep it for as long as the results are wanted.
ScanStream scan(std::vector<CleanRule> rules, RouteTable routes, ResultHandler onResult, EndHandler onEnd);

// The result of one rule, measured on the calling thread: its own route if it has one and that
// gives a list, else its path patterns, sized and sorted largest first (stable).
RuleScanResult scanRule(const CleanRule& rule, const RouteTable& routes);

} // namespace CacheScanner
} // namespace lumabroom
