// vellicor/fileformat/document_file.h — whole documents from and to files, for applications.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "vellicor/model/forward.h"
#include "vellicor/platform/exception.h"

namespace vellicor {

/// What stopped reading or writing a document. The reason is a sentence for people: which file, what is wrong and
/// where, what to do. The name is the one of the underlying exception, where there is one.
class DocumentFileError : public SQLException {
public:
    enum class Kind {
        CannotRead,    ///< no such file, no permission, a failing disk
        NotADocument,  ///< the content is no design document, not even after repair
        CannotWrite,   ///< the old file, if any, is still whole
    };
    DocumentFileError(Kind kind, std::string name, const std::string& reason)
        : SQLException(std::move(name), reason), _kind(kind) {}
    [[nodiscard]] Kind kind() const { return _kind; }

private:
    Kind _kind;
};

struct LoadedDocument {
    std::shared_ptr<SQLContainer> container;   ///< never null; references are resolved
    bool recovered = false;                    ///< this load had to repair the document
    std::string damage;                        ///< what the first attempt met; empty unless `recovered`
    std::vector<std::string> changes;          ///< what the repair changed or left out, in words
    std::vector<std::string> unknownElements;  ///< elements inside known objects that nobody knows, in words
};

/// Reads a file once, be it a pipe, external entities included; when that fails, the bytes that were read are repaired
/// and parsed once more, without external entities. Raises `DocumentFileError`.
[[nodiscard]] LoadedDocument loadDocument(const std::filesystem::path& path);
/// The same for bytes at hand, without external entities. `name` stands for the file in messages.
[[nodiscard]] LoadedDocument loadDocumentData(std::string_view bytes, std::string_view name);

/// Writes the whole document or nothing; only one object's element is in memory at a time. Raises `DocumentFileError`.
void saveDocument(const SQLContainer& container, const std::filesystem::path& path);

}  // namespace vellicor
