// cli/database_source.h — databases, and files of SQL, as documents.
#pragma once

#include <memory>
#include <string>

#include "vellicor/database/catalog.h"
#include "vellicor/database/connection.h"

namespace vellicor::cli {

class Messages;
struct Document;

/// How a source that is no document is read.
struct SourceOptions {
    std::string dialect;  ///< of a file of SQL; as people name it
    std::string scratch;  ///< URL of the server that a file of SQL is run on
};

/// Whether it is read here: the URL of a database, or a file of SQL.
[[nodiscard]] bool isDatabaseSource(const std::string& argument);

/// Makes a document of the source. What it does not hold becomes a warning each; what cannot be read is a `Failure`.
[[nodiscard]] Document readDatabaseSource(const std::string& argument, const SourceOptions& options,
                                          Messages& messages);

/// The failure of the tool that an error of a database is.
[[noreturn]] void throwDatabaseFailure(const DatabaseError& error);

/// Runs `work`, which talks to databases, and turns their errors into failures of the tool.
template <class Work>
auto withDatabaseErrors(Work work) {
    try {
        return work();
    } catch (const DatabaseError& error) {
        throwDatabaseFailure(error);
    }
}

}  // namespace vellicor::cli
