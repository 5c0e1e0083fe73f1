// vellicor/platform/files.cpp — whole files read, and files replaced in one step.
#include "vellicor/platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "vellicor/platform/file_descriptor.h"
#include "vellicor/platform/uuid.h"

namespace vellicor {

namespace {

constexpr std::size_t kBufferSize = 1 << 16;
constexpr int kMostLinks = 40;

/// The file behind a chain of symbolic links, whether it exists or not; null when the chain does not end.
std::optional<std::filesystem::path> behindLinks(std::filesystem::path file) {
    std::error_code error;
    for (int links = 0; links <= kMostLinks; ++links) {
        std::filesystem::path next = std::filesystem::read_symlink(file, error);
        if (error) return file;
        file = file.parent_path() / next;
    }
    return std::nullopt;
}

/// 0, or the errno of the failure.
int writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        ::ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) return errno;
        if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return 0;
}

/// 0, or the errno of the failure; a pipe or device that cannot be synchronised needs no synchronising.
int synchronise(int descriptor) { return ::fsync(descriptor) == 0 || errno == EINVAL || errno == ENOTSUP ? 0 : errno; }

std::filesystem::path folderOf(const std::filesystem::path& file) {
    return file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
}

}  // namespace

std::optional<std::string> readFile(const std::filesystem::path& file, std::string& error) {
    FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    if (!descriptor) {
        error = systemReason(errno);
        return std::nullopt;
    }
    std::string bytes;
    struct stat status;
    if (::fstat(descriptor.get(), &status) == 0 && S_ISREG(status.st_mode))
        bytes.reserve(static_cast<std::size_t>(status.st_size));
    if (int failure = descriptor.readUpTo(std::string::npos, bytes)) {
        error = systemReason(failure);
        return std::nullopt;
    }
    return bytes;
}

AtomicFile::AtomicFile(std::filesystem::path target) {
    std::optional<std::filesystem::path> file = behindLinks(std::move(target));
    if (!file) {
        _failure = ELOOP;
        return;
    }
    _target = *file;
    struct stat status;
    bool exists = ::stat(_target.c_str(), &status) == 0;
    if (exists && S_ISDIR(status.st_mode)) {
        _failure = EISDIR;
        return;
    }
    if (exists && !S_ISREG(status.st_mode)) {  // a device or a pipe is written to, never replaced
        _descriptor = ::open(_target.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
        if (_descriptor < 0) _failure = errno;
        return;
    }
    if (exists && ::faccessat(AT_FDCWD, _target.c_str(), W_OK, AT_EACCESS) != 0) {  // a rename would not ask
        _failure = errno;
        return;
    }
    _temporary = folderOf(_target) / (".vellicor-" + newUuidText());
    _descriptor = ::open(_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, exists ? 0600 : 0666);
    if (_descriptor < 0) {
        _failure = errno;
        _temporary.clear();
        return;
    }
    if (!exists) return;
    // The owner can be kept only by a privileged user; a change of owner takes bits away, so the permissions follow it.
    bool ownerKept = ::fchown(_descriptor, status.st_uid, status.st_gid) == 0;
    mode_t kept = ownerKept ? 07777 : 0777;
    if (::fchmod(_descriptor, status.st_mode & kept) != 0) _failure = errno;
}

AtomicFile::~AtomicFile() {
    if (_descriptor >= 0) ::close(_descriptor);
    if (!_temporary.empty()) ::unlink(_temporary.c_str());
}

void AtomicFile::write(std::string_view bytes) {
    if (_failure != 0) return;
    if (_buffer.size() + bytes.size() < kBufferSize) {
        _buffer += bytes;
        return;
    }
    _failure = writeAll(_descriptor, _buffer);
    _buffer.clear();
    if (_failure == 0) _failure = writeAll(_descriptor, bytes);
}

bool AtomicFile::commit(std::string& error) {
    if (_failure == 0) _failure = _descriptor < 0 ? EBADF : writeAll(_descriptor, _buffer);
    if (_failure == 0) _failure = synchronise(_descriptor);
    if (_descriptor >= 0 && ::close(_descriptor) != 0 && _failure == 0) _failure = errno;
    _descriptor = -1;
    if (_failure == 0 && !_temporary.empty()) {
        if (::rename(_temporary.c_str(), _target.c_str()) == 0) {
            _temporary.clear();
            FileDescriptor folder(::open(folderOf(_target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
            if (folder) synchronise(folder.get());  // the file is in place, whatever becomes of this
        } else {
            _failure = errno;
        }
    }
    if (_failure == 0) return true;
    if (!_temporary.empty()) ::unlink(_temporary.c_str());
    _temporary.clear();
    error = systemReason(_failure);
    return false;
}

bool writeFileAtomically(const std::filesystem::path& file, std::string_view bytes, std::string& error) {
    AtomicFile replacement(file);
    replacement.write(bytes);
    return replacement.commit(error);
}

}  // namespace vellicor
