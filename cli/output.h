// cli/output.h — where a command's data goes.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vellicor::cli {

struct Document;

/// A file, or standard output.
class Output {
public:
    static Output standard() { return Output(std::nullopt); }
    /// "-" and the empty text mean standard output, a folder the file `<stem>.<extension>` in it. A target that cannot
    /// be written is a `Failure` here already where that can be seen without touching it.
    static Output to(const std::string& argument, std::string_view stem, std::string_view extension);

    /// Null for standard output.
    [[nodiscard]] const std::optional<std::filesystem::path>& file() const { return _file; }
    /// Whether it would replace the file that the document was read from, be that by standard input or through links.
    [[nodiscard]] bool replaces(const Document& document) const;
    /// Keeps the present file beside itself as "<file>.bak", or "<file>.bak2" and so on when there is one; answers its
    /// name. A `Failure` when that cannot be done.
    std::filesystem::path keepBackup() const;
    /// All of it or, to a file, nothing: an existing file is whole whatever happens.
    void write(std::string_view bytes) const;

private:
    explicit Output(std::optional<std::filesystem::path> file) : _file(std::move(file)) {}
    std::optional<std::filesystem::path> _file;
};

}  // namespace vellicor::cli
