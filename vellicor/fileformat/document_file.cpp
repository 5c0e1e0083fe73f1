// vellicor/fileformat/document_file.cpp — whole documents from and to files, for applications.
#include "vellicor/fileformat/document_file.h"

#include <exception>
#include <functional>
#include <memory>
#include <optional>

#include "vellicor/fileformat/parser.h"
#include "vellicor/model/container.h"
#include "vellicor/platform/files.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

using Kind = DocumentFileError::Kind;
using Parse = std::function<void(Parser&, SQLContainer&)>;

/// "line 3, column 5: …", or just what is wrong when no place is known.
std::string damageOf(const SQLException& exception) {
    if (const auto* malformed = dynamic_cast<const XMLError*>(&exception); malformed && malformed->line() > 0)
        return text("line %ld, column %ld: %@", malformed->line(), malformed->column(), malformed->description());
    try {
        std::rethrow_if_nested(exception);
    } catch (const SQLException& cause) {
        return damageOf(cause);
    }
    return exception.reason();
}

/// Any XML can be read; only this root makes it a document.
void requireDocument(const Parser& parser, std::string_view name) {
    const std::string& root = parser.stack().peek()->name();
    if (root == "SQLContainer") return;
    throw DocumentFileError(Kind::NotADocument, exceptions::parsing,
                            text("%@ is no design document: its outermost element is \"%@\" instead of "
                                 "\"SQLContainer\". Choose another file",
                                 name, root));
}

/// The reference to another file that an error is about; null for errors of other kinds.
const ExternalEntityError* entityErrorOf(const SQLException& exception, std::exception_ptr& keepAlive) {
    if (const auto* error = dynamic_cast<const ExternalEntityError*>(&exception)) return error;
    try {
        std::rethrow_if_nested(exception);
    } catch (const SQLException& cause) {
        keepAlive = std::current_exception();
        return entityErrorOf(cause, keepAlive);
    }
    return nullptr;
}

DocumentFileError unreadable(std::string_view name, const SQLException& first, const std::string& damage,
                             const SQLException& second) {
    std::exception_ptr keepAlive;
    if (const ExternalEntityError* error = entityErrorOf(second, keepAlive))
        return {
            Kind::NotADocument, first.name(),
            text("%@ cannot be read as a design document: %@. It cannot be repaired either, since it includes another "
                 "file by %@: put the text of that file into the document, or correct the document by hand",
                 name, damage, error->entity())};
    return {
        Kind::NotADocument, first.name(),
        text("%@ cannot be read as a design document, and repairing it did not help: %@. Correct the file by hand or "
             "take an older copy of it",
             name, damage)};
}

/// What `parse` makes of `bytes`; when it fails, what repairing them gives.
LoadedDocument loaded(std::string_view name, std::string_view bytes, const Parse& parse) {
    LoadedDocument document;
    document.container = SQLContainer::newContainer();
    Parser parser;
    const auto finish = [&] {
        requireDocument(parser, name);
        document.container->postLoadProcess();
        document.changes = parser.changes();
        document.unknownElements = parser.unknownElements();
    };
    try {
        parse(parser, *document.container);
        finish();
        return document;
    } catch (const DocumentFileError&) {
        throw;
    } catch (const SQLException& failure) {
        document.recovered = true;
        document.damage = damageOf(failure);
        try {
            parser.recoverFromData(bytes, *document.container, failure);
            finish();
            return document;
        } catch (const DocumentFileError&) {
            throw;
        } catch (const SQLException& second) {
            throw unreadable(name, failure, document.damage, second);
        }
    }
}

}  // namespace

LoadedDocument loadDocument(const std::filesystem::path& path) {
    std::string reason;
    const std::optional<std::string> bytes = readFile(path, reason);
    if (!bytes)
        throw DocumentFileError(Kind::CannotRead, exceptions::xmlParse,
                                text("%@ cannot be read: %@", path.string(), reason));
    return loaded(path.string(), *bytes,
                  [&](Parser& parser, SQLContainer& container) { parser.parseXMLFile(path, *bytes, container); });
}

LoadedDocument loadDocumentData(std::string_view bytes, std::string_view name) {
    return loaded(name, bytes,
                  [bytes](Parser& parser, SQLContainer& container) { parser.parseXMLFromData(bytes, container); });
}

void saveDocument(const SQLContainer& container, const std::filesystem::path& path) {
    AtomicFile file(path);
    container.writeXML([&](std::string_view piece) { file.write(piece); });
    std::string reason;
    if (file.commit(reason)) return;
    throw DocumentFileError(
        Kind::CannotWrite, "DocumentWriteException",
        text("%@ cannot be written: %@. An earlier version of it is unchanged", path.string(), reason));
}

}  // namespace vellicor
