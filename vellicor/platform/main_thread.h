// vellicor/platform/main_thread.h — which thread is the application's main thread.
#pragma once

#include <functional>

namespace vellicor {

/// True on the thread that first used the library, or the one that `adoptMainThread` named.
[[nodiscard]] bool isMainThread();
/// Makes the calling thread the main thread.
void adoptMainThread();

/// Runs `work` on the main thread and waits for it: at once when already there; otherwise through the runner that the
/// application installed, or directly when it installed none.
void performOnMainThreadAndWait(const std::function<void()>& work);
void setMainThreadRunner(std::function<void(const std::function<void()>&)> runner);

}  // namespace vellicor
