#pragma once

#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <type_traits>
#include <vector>

namespace lumabroom::ParallelMap {

namespace detail {
// True while the current thread runs an item of a parallel `run`; a `run` that sees it stays sequential.
bool& nestedFlag();
// Calls body(i) for every i below n, on the calling thread and on helpers of the worker pool; returns
// when all are done. Each item runs with the nested flag set and the caller's cancel state.
void forEachIndex(std::size_t n, const std::function<void(std::size_t)>& body);
} // namespace detail

struct NoCallback {
    template <typename R>
    void operator()(std::size_t, const R&) const {}
};

// Maps `transform` over `items` on all processors and gives the results in the order of `items`.
// `onEach(index, result)` is called as soon as an item is done, one call at a time (under a lock).
// Fewer than two items, or a call from inside another run's transform, runs sequentially on the
// calling thread, in index order.
template <typename Item, typename Transform, typename OnEach = NoCallback>
auto run(const std::vector<Item>& items, Transform&& transform, OnEach&& onEach = {})
    -> std::vector<std::invoke_result_t<Transform&, const Item&>> {
    using Result = std::invoke_result_t<Transform&, const Item&>;
    std::vector<Result> results;
    if (items.size() < 2 || detail::nestedFlag()) {
        results.reserve(items.size());
        for (std::size_t i = 0; i < items.size(); ++i) {
            results.push_back(transform(items[i]));
            onEach(i, results.back());
        }
        return results;
    }

    std::mutex lock;
    std::vector<std::optional<Result>> slots(items.size());
    detail::forEachIndex(items.size(), [&](std::size_t i) {
        Result result = transform(items[i]);
        std::lock_guard guard(lock);
        slots[i].emplace(std::move(result));
        onEach(i, *slots[i]);
    });
    results.reserve(items.size());
    for (auto& slot : slots) results.push_back(std::move(*slot));
    return results;
}

} // namespace lumabroom::ParallelMap
