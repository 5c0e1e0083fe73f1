// vellicor/platform/entity_files.cpp — refusing every entity file outside the folder of the document.
#include "vellicor/platform/entity_files.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <system_error>

#include "vellicor/platform/file_descriptor.h"
#include "vellicor/platform/files.h"

namespace vellicor {

namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// A letter, then letters, digits, "+", "-" or ".", then a colon: "http:", "file:".
bool hasURLScheme(std::string_view systemId) {
    std::size_t colon = systemId.find(':');
    if (colon == std::string_view::npos || colon == 0 || !isLetter(systemId[0])) return false;
    return std::all_of(systemId.begin(), systemId.begin() + colon, [](char c) {
        return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
    });
}

int hexDigitOfURI(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// "%20" and its like as the bytes that they stand for; a "%" that begins no such thing stays.
std::string decodedURI(std::string_view uri) {
    std::string decoded;
    for (std::size_t i = 0; i < uri.size(); ++i) {
        const int high = uri[i] == '%' && i + 2 < uri.size() ? hexDigitOfURI(uri[i + 1]) : -1;
        const int low = high < 0 ? -1 : hexDigitOfURI(uri[i + 2]);
        decoded += low < 0 ? uri[i] : static_cast<char>(high * 16 + low);
        if (low >= 0) i += 2;
    }
    return decoded;
}

}  // namespace

EntityFiles::EntityFiles(const std::filesystem::path& folder) {
    std::error_code error;
    _folder = std::filesystem::canonical(folder, error);
}

bool EntityFiles::contains(const std::filesystem::path& file) const {
    auto [inFolder, inFile] = std::mismatch(_folder.begin(), _folder.end(), file.begin(), file.end());
    return !_folder.empty() && inFolder == _folder.end() && inFile != file.end();
}

std::optional<EntityFiles::Included> EntityFiles::read(std::string_view systemId, const std::filesystem::path& base,
                                                       std::string& refusal) const {
    if (hasURLScheme(systemId)) {
        refusal = "addresses are not followed: name a file in the folder of the document";
        return std::nullopt;
    }
    const std::string name = decodedURI(systemId);
    if (name.find('\0') != name.npos) {
        refusal = "it is no name of a file";
        return std::nullopt;
    }
    std::error_code error;
    std::filesystem::path file = std::filesystem::weakly_canonical(base / name, error);
    if (error) {
        refusal = error.message();
        return std::nullopt;
    }
    if (!contains(file)) {
        refusal = "it is outside the folder of the document: move it into that folder";
        return std::nullopt;
    }
    // The checks below look at the opened file, so that nobody can exchange it in between; a device or a pipe must not
    // keep the reader waiting.
    FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
    struct stat status;
    if (!descriptor || ::fstat(descriptor.get(), &status) != 0) {
        refusal = systemReason(errno);
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode)) {
        refusal = "it is not a regular file";
        return std::nullopt;
    }
    Included included{file, {}};
    if (int failure = descriptor.readUpTo(kLargestFile + 1, included.bytes)) {
        refusal = systemReason(failure);
        return std::nullopt;
    }
    if (included.bytes.size() > kLargestFile) {
        refusal = "it is larger than 1 MiB";
        return std::nullopt;
    }
    return included;
}

}  // namespace vellicor
