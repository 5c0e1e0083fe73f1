// vellicor/platform/file_descriptor.h — a file descriptor that closes itself, for the sources of this folder.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <limits>
#include <string>
#include <system_error>

namespace vellicor {

/// The system's words for an errno.
inline std::string systemReason(int failure) { return std::generic_category().message(failure); }

class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor) : _descriptor(descriptor) {}
    ~FileDescriptor() {
        if (_descriptor >= 0) ::close(_descriptor);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    explicit operator bool() const { return _descriptor >= 0; }
    int get() const { return _descriptor; }

    /// Fills `buffer` as far as one read goes: the number of bytes, 0 at the end of the file, -1 with errno on failure.
    ::ssize_t readSome(char* buffer, std::size_t size) const {
        ::ssize_t count;
        do count = ::read(_descriptor, buffer, size);
        while (count < 0 && errno == EINTR);
        return count;
    }

    /// Appends at most `limit` bytes to `out`; 0, or the errno of the failure.
    int readUpTo(std::size_t limit, std::string& out) const {
        char piece[65536];
        while (limit > 0) {
            ::ssize_t count = readSome(piece, std::min(limit, sizeof piece));
            if (count < 0) return errno;
            if (count == 0) break;
            out.append(piece, static_cast<std::size_t>(count));
            limit -= static_cast<std::size_t>(count);
        }
        return 0;
    }

private:
    int _descriptor;
};

}  // namespace vellicor
