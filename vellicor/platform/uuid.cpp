// vellicor/platform/uuid.cpp — random identifiers from the system's generator.
#include "vellicor/platform/uuid.h"

#include <pthread.h>
#include <sys/random.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <random>

namespace vellicor {

namespace {

/// Counts the forks above this process: bytes in store before a fork would come out twice, once on each side.
std::atomic<unsigned> forkGeneration{0};

/// One thread's store of random bytes, filled by one system call for many identifiers.
class RandomBytes {
public:
    static constexpr std::size_t kUuidSize = 16;

    /// The next 16 bytes; valid until the next call.
    unsigned char* take() {
        unsigned generation = forkGeneration.load(std::memory_order_relaxed);
        if (_next == sizeof _bytes || generation != _generation) {
            fill();
            _next = 0;
            _generation = generation;
        }
        unsigned char* taken = _bytes + _next;
        _next += kUuidSize;
        return taken;
    }

private:
    void fill() {
        std::size_t filled = 0;
        while (filled < sizeof _bytes) {
            ::ssize_t count = ::getrandom(_bytes + filled, sizeof _bytes - filled, 0);
            if (count > 0)
                filled += static_cast<std::size_t>(count);
            else if (errno != EINTR)
                break;
        }
        if (filled == sizeof _bytes) return;
        std::random_device device;  // on a kernel without that call
        for (; filled < sizeof _bytes; ++filled) _bytes[filled] = static_cast<unsigned char>(device());
    }

    unsigned char _bytes[256 * kUuidSize];
    std::size_t _next = sizeof _bytes;
    unsigned _generation = 0;
};

}  // namespace

std::string newUuidText() {
    static const int watchesForks = pthread_atfork(nullptr, nullptr, [] { ++forkGeneration; });
    static_cast<void>(watchesForks);
    thread_local RandomBytes random;
    unsigned char* bytes = random.take();
    bytes[6] = (bytes[6] & 0x0F) | 0x40;  // version 4
    bytes[8] = (bytes[8] & 0x3F) | 0x80;  // the variant that has versions

    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text(36, '-');
    std::size_t position = 0;
    for (std::size_t i = 0; i < RandomBytes::kUuidSize; ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) ++position;
        text[position++] = kDigits[bytes[i] >> 4];
        text[position++] = kDigits[bytes[i] & 0x0F];
    }
    return text;
}

}  // namespace vellicor
