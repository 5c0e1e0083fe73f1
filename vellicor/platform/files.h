// vellicor/platform/files.h — reading whole files, and replacing files so that a failure leaves the old one whole.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vellicor {

/// The bytes of a file; null with the system's reason in `error` when it cannot be read.
[[nodiscard]] std::optional<std::string> readFile(const std::filesystem::path& file, std::string& error);

/// A file being written beside the one it will replace: temporary file in the same folder, flushed and synchronised,
/// then renamed over the target, permissions kept, symbolic links followed. Nothing of it remains when `commit` was not
/// called or failed. A file that may not be written is not replaced; a device or a pipe is written to directly.
class AtomicFile {
public:
    explicit AtomicFile(std::filesystem::path target);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    /// Errors are kept and reported by `commit`.
    void write(std::string_view bytes);
    /// Puts the file in place; false with the system's reason in `error` when anything failed, the old file then whole.
    [[nodiscard]] bool commit(std::string& error);

private:
    std::filesystem::path _target;
    std::filesystem::path _temporary;  // empty until created and after it was renamed or removed
    std::string _buffer;               // written, but not yet handed to the system
    int _descriptor = -1;
    int _failure = 0;  // errno of the first failure; 0 when none
};

/// Writes a whole file through `AtomicFile`.
[[nodiscard]] bool writeFileAtomically(const std::filesystem::path& file, std::string_view bytes, std::string& error);

}  // namespace vellicor
