// cli/output.cpp — writing whole files and streams.
#include "cli/output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "cli/document_input.h"
#include "cli/failure.h"
#include "vellicor/platform/files.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

namespace {

Failure cannotWrite(const std::string& what, const std::string& reason) {
    return {kCannotWrite,
            text("%@ cannot be written: %@; nothing was changed, choose another place with -o", what, reason)};
}

void writeToStandardOutput(std::string_view bytes) {
    errno = 0;
    if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size() || std::fflush(stdout) != 0)
        throw Failure(kCannotWrite,
                      text("standard output cannot be written: %@; give a file with -o", std::strerror(errno)));
}

}  // namespace

Output Output::to(const std::string& argument, std::string_view stem, std::string_view extension) {
    if (argument.empty() || argument == "-") return standard();
    std::filesystem::path file = argument;
    std::error_code error;
    if (std::filesystem::is_directory(file, error)) {
        file /= text("%@.%@", stem, extension);
        if (std::filesystem::is_directory(file, error)) throw cannotWrite(file.string(), "it is a folder");
    } else if (!file.has_filename()) {
        throw cannotWrite(file.string(), "there is no such folder");
    } else if (const auto folder = file.parent_path();
               !folder.empty() && !std::filesystem::is_directory(folder, error)) {
        throw cannotWrite(file.string(), text("there is no folder %@", folder.string()));
    }
    return Output(std::move(file));
}

bool Output::replaces(const Document& document) const {
    std::error_code error;
    const std::filesystem::path source = document.file.value_or("/dev/stdin");
    return _file && std::filesystem::is_regular_file(source, error) &&
           std::filesystem::equivalent(*_file, source, error);
}

std::filesystem::path Output::keepBackup() const {
    std::error_code error;
    for (int number = 1;; ++number) {
        const std::filesystem::path backup = _file->string() + (number == 1 ? ".bak" : text(".bak%d", number));
        if (std::filesystem::exists(std::filesystem::symlink_status(backup, error))) continue;
        if (std::filesystem::copy_file(*_file, backup, error)) return backup;
        if (error != std::errc::file_exists) throw cannotWrite(backup.string(), error.message());
    }
}

void Output::write(std::string_view bytes) const {
    if (!_file) return writeToStandardOutput(bytes);
    std::string reason;
    if (!writeFileAtomically(*_file, bytes, reason)) throw cannotWrite(_file->string(), reason);
}

}  // namespace vellicor::cli
