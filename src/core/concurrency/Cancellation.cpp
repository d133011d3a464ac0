#include "concurrency/Cancellation.h"

namespace lumabroom {

namespace {
thread_local const std::atomic<bool>* tlsCancel = nullptr;
} // namespace

namespace Cancellation {
bool isCancelled() { return tlsCancel && tlsCancel->load(std::memory_order_relaxed); }
const std::atomic<bool>* current() { return tlsCancel; }
Scope::Scope(const std::atomic<bool>* flag) : saved_(tlsCancel) { tlsCancel = flag; }
Scope::~Scope() { tlsCancel = saved_; }
} // namespace Cancellation

} // namespace lumabroom
