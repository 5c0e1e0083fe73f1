// vellicor/util/progress_watcher.h — a plain progress counter.
#pragma once

#include <cstdint>

namespace vellicor {

/// Three whole numbers, 0 at the start, set from and read as floating-point numbers. What is set is cut off towards
/// zero and kept inside 32 bits.
class ProgressWatcher {
public:
    [[nodiscard]] double getCount() const { return _count; }
    void setCount(double count) { _count = truncated(count); }
    [[nodiscard]] double getPosition() const { return _position; }
    void setPosition(double position) { _position = truncated(position); }
    void setIncrement(double increment) { _increment = truncated(increment); }
    void incrementPosition() { setPosition(getPosition() + _increment); }

private:
    [[nodiscard]] static std::int32_t truncated(double number) {
        if (number != number) return 0;
        if (number >= INT32_MAX) return INT32_MAX;
        if (number <= INT32_MIN) return INT32_MIN;
        return static_cast<std::int32_t>(number);
    }

    std::int32_t _count = 0;
    std::int32_t _increment = 0;
    std::int32_t _position = 0;
};

}  // namespace vellicor
