// vellicor/platform/main_thread.cpp — remembering the main thread, and handing work to it.
#include "vellicor/platform/main_thread.h"

#include <atomic>
#include <future>
#include <memory>
#include <thread>
#include <utility>

#include "vellicor/platform/guarded.h"

namespace vellicor {

namespace {

using Runner = std::function<void(const std::function<void()>&)>;

/// The first caller is the main thread until another one is named.
std::atomic<std::thread::id>& mainThread() {
    static std::atomic<std::thread::id> id{std::this_thread::get_id()};
    return id;
}

Guarded<Runner>& currentRunner() {
    static auto& runner = *new Guarded<Runner>;
    return runner;
}

}  // namespace

bool isMainThread() { return mainThread().load() == std::this_thread::get_id(); }

void adoptMainThread() { mainThread().store(std::this_thread::get_id()); }

void performOnMainThreadAndWait(const std::function<void()>& work) {
    Runner runner = isMainThread() ? Runner() : *currentRunner().lock();
    if (!runner) {
        work();
        return;
    }
    // The runner may only queue the work, so the wait is here; it ends with an exception when the work is thrown away.
    auto task = std::make_shared<std::packaged_task<void()>>(work);
    std::future<void> done = task->get_future();
    runner([task] { (*task)(); });
    task.reset();
    done.get();
}

void setMainThreadRunner(Runner runner) { *currentRunner().lock() = std::move(runner); }

}  // namespace vellicor
