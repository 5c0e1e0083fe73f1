// vellicor/fileformat/document_file.cpp — whole documents from and to files, for applications.
#include "vellicor/fileformat/document_file.h"

#include <exception>
#include <functional>
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

/// A new container as `parse` fills it, its references resolved.
std::shared_ptr<SQLContainer> containerFrom(std::string_view name, const Parse& parse) {
    auto container = SQLContainer::newContainer();
    Parser parser;
    parse(parser, *container);
    requireDocument(parser, name);
    container->postLoadProcess();
    return container;
}

/// `bytes` are asked for only when `parse` fails.
LoadedDocument loaded(std::string_view name, const Parse& parse, const std::function<std::string()>& bytes) {
    std::string exceptionName;
    std::string damage;
    try {
        return {containerFrom(name, parse), false, {}};
    } catch (const DocumentFileError&) {
        throw;
    } catch (const SQLException& failure) {
        exceptionName = failure.name();
        damage = damageOf(failure);
    }
    const Parse recovery = [content = bytes()](Parser& parser, SQLContainer& container) {
        parser.parseXMLWithRecoveryFromData(content, container);
    };
    try {
        return {containerFrom(name, recovery), true, damage};
    } catch (const DocumentFileError&) {
        throw;
    } catch (const SQLException&) {
        throw DocumentFileError(Kind::NotADocument, exceptionName,
                                text("%@ cannot be read as a design document, and repairing it did not help: %@. "
                                     "Correct the file by hand or take an older copy of it",
                                     name, damage));
    }
}

DocumentFileError cannotRead(const std::string& reason) { return {Kind::CannotRead, exceptions::xmlParse, reason}; }

}  // namespace

LoadedDocument loadDocument(const std::filesystem::path& path) {
    const Parse parse = [&](Parser& parser, SQLContainer& container) {
        try {
            parser.parseXMLFile(path, container);
        } catch (const XMLError& error) {
            if (error.code() == 0) throw cannotRead(error.description());
            throw;
        }
    };
    return loaded(path.string(), parse, [&] {
        std::string reason;
        std::optional<std::string> bytes = readFile(path, reason);
        if (!bytes) throw cannotRead(text("%@ cannot be read: %@", path.string(), reason));
        return std::move(*bytes);
    });
}

LoadedDocument loadDocumentData(std::string_view bytes, std::string_view name) {
    const Parse parse = [&](Parser& parser, SQLContainer& container) { parser.parseXMLFromData(bytes, container); };
    return loaded(name, parse, [&] { return std::string(bytes); });
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
