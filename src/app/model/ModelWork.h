#pragma once

// What every operation file of the model shares: the pool its blocking work runs on, the way the
// outcomes come back to the model's thread, and the field assignments that notify.

#include "AppModel.h"

#include "concurrency/ThreadPool.h"
#include "tools/OrbStackRefresher.h"

#include <QCoreApplication>
#include <QEvent>

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string_view>
#include <thread>

namespace lumabroom {

inline constexpr std::string_view kOrbStackRule = "tool.orbstack";
inline constexpr std::string_view kDockerRule = "tool.docker";
inline constexpr std::string_view kWorktreeRule = "tool.codex-worktrees";
inline constexpr std::string_view kClaudeSessionsRule = "code.claude-sessions";
inline constexpr std::string_view kSimulatorRule = "xcode.simulator-devices";
inline constexpr std::string_view kOllamaRule = "tool.ollama";

inline const QEvent::Type kInboxEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

inline bool holdsDockerRow(const std::vector<ScanEntry>& entries) { return OrbStackRefresher::isRefined(entries); }

// The model's blocking work runs on threads of its own, apart from the scan's pool: a tool may run
// for ten minutes, and a scan started meanwhile must not wait for it. Never destroyed: a quit must
// not wait for such a tool either.
inline ThreadPool& workPool() {
    static ThreadPool& pool = *new ThreadPool(8);
    return pool;
}

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

template <class Field, class Signal>
void AppModel::assign(Field& field, Field value, Signal signal) {
    assertOnOwnThread();
    const bool changed = !(field == value);
    field = std::move(value);
    if (changed) Q_EMIT(this->*signal)();
}

template <class Field, class Signal>
void AppModel::assignAndNotify(Field& field, Field value, Signal signal) {
    assertOnOwnThread();
    field = std::move(value);
    Q_EMIT(this->*signal)();
}

template <class Work, class Done>
void AppModel::offMainThread(Work work, Done done) {
    workPool().submit([inbox = inbox_, work = std::move(work), done = std::move(done)]() mutable {
        auto outcome = work();
        inbox->post([done = std::move(done), outcome = std::move(outcome)]() mutable { done(std::move(outcome)); });
    });
}

} // namespace lumabroom
