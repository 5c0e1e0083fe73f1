// cli/database_source.cpp — opening databases, running files of SQL, and what goes wrong.
#include "cli/database_source.h"

#include "cli/dialect_names.h"
#include "cli/document_input.h"
#include "cli/failure.h"
#include "cli/messages.h"
#include "cli/progress.h"
#include "vellicor/database/catalog_document.h"
#include "vellicor/database/catalog_reader.h"
#include "vellicor/model/container.h"
#include "vellicor/platform/files.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

namespace {

bool isSqlFile(const std::string& argument) {
    return argument.size() > 4 && equalIgnoringCase(std::string_view(argument).substr(argument.size() - 4), ".sql");
}

ExitCode exitCodeOf(DatabaseError::Kind kind) {
    switch (kind) {
        case DatabaseError::Kind::BadUrl: return kBadUse;
        case DatabaseError::Kind::NotThere: return kNoInput;
        default: return kFailed;
    }
}

std::string sqlText(const std::string& file) {
    std::string reason;
    if (auto content = readFile(file, reason)) return *content;
    throw Failure(kNoInput, text("%@ cannot be read: %@; give the path of a file of SQL", file, reason));
}

/// What the statements of a file make in an empty database.
Catalog catalogOfScript(const std::string& file, const SourceOptions& options) {
    if (options.dialect.empty())
        throw Failure(kBadUse, text("%@ is a file of SQL; say with -d in which dialect it is written", file));
    const std::string dialect = dialectNamed(options.dialect);
    const std::string sql = sqlText(file);
    DatabaseUrl url;
    url.file = ":memory:";
    if (dialect != url.dialect())
        throw Failure(kBadUse, text("a file of SQL in the dialect %@ cannot be read; SQLite's can", dialect));
    const auto database = DatabaseConnection::open(url, DatabaseAccess::ReadWrite);
    try {
        database->execute(sql);
    } catch (const DatabaseError& error) {
        throw Failure(kFailed, text("%@ does not run: %@", file, error.reason()));
    }
    return readCatalog(*database);
}

}  // namespace

bool isDatabaseSource(const std::string& argument) { return DatabaseUrl::isUrl(argument) || isSqlFile(argument); }

void throwDatabaseFailure(const DatabaseError& error) { throw Failure(exitCodeOf(error.kind()), error.reason()); }

Document readDatabaseSource(const std::string& argument, const SourceOptions& options, Messages& messages) {
    return withDatabaseErrors([&] {
        Document document;
        Catalog catalog;
        if (DatabaseUrl::isUrl(argument)) {
            const DatabaseUrl url = DatabaseUrl::parse(argument);
            document.name = url.text();
            document.stem = url.stem();
            if (!url.file.empty()) document.file = url.file;
            const Progress progress(messages, "reading " + document.name);
            catalog = readCatalog(*DatabaseConnection::open(url, DatabaseAccess::ReadOnly));
        } else {
            document.name = argument;
            document.file = argument;
            document.stem = document.file->stem().string();
            const Progress progress(messages, "reading " + document.name);
            catalog = catalogOfScript(argument, options);
        }
        CatalogDocument made = documentOf(catalog);
        document.container = std::move(made.container);
        for (const std::string& line : made.omissions) messages.warning(text("the document does not hold %@", line));
        return document;
    });
}

}  // namespace vellicor::cli
