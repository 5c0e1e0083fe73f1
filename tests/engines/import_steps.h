// tests/engines/import_steps.h — databases read into documents and made anew from them.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "tests/engines/generated_documents.h"
#include "vellicor/database/connection.h"

namespace vellicor::testing {

/// An empty database.
using FreshDatabase = std::function<std::unique_ptr<DatabaseConnection>()>;

/// The engine's database, cleared first.
template <class ServerType>
FreshDatabase freshDatabasesOf(ServerType& engine) {
    return [&engine] {
        engine.clear();
        return DatabaseConnection::open(DatabaseUrl::parse(engine.url()), DatabaseAccess::ReadWrite);
    };
}

/// Runs the script, reads the database into a document, saves and loads that, and runs its script in another database:
/// both catalogs are equal, and reading twice gives the same bytes.
void expectImportKeepsAll(const FreshDatabase& fresh, const std::string& script, const std::string& title);

/// The same for the example documents and generated ones, as the dialect's runnable scripts make them.
void expectImportsKeepDocuments(const FreshDatabase& fresh, std::string_view dialect, const DocumentTraits& traits,
                                std::uint64_t count);

}  // namespace vellicor::testing
