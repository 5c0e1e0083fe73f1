// tests/support/two_threads.h — one thread changes while another reads; meant for the thread sanitizer.
#pragma once

#include <atomic>
#include <cstddef>
#include <thread>

namespace vellicor::testing {

/// Calls `change` with 0, 1, … `count - 1` in a thread of its own, and `read` in this one until that is done.
template <class Change, class Read>
void changeWhileReading(std::size_t count, Change change, Read read) {
    std::atomic<bool> done = false;
    std::thread writer([&] {
        for (std::size_t i = 0; i < count; ++i) change(i);
        done = true;
    });
    do read();
    while (!done);
    writer.join();
}

}  // namespace vellicor::testing
