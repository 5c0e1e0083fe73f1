// tests/engines/import_steps.cpp — comparing what two databases hold.
#include "tests/engines/import_steps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/dialect_text.h"
#include "vellicor/database/catalog_document.h"
#include "vellicor/database/catalog_facts.h"
#include "vellicor/database/catalog_reader.h"
#include "vellicor/fileformat/document_file.h"
#include "vellicor/model/document_info.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor::testing {

namespace {

std::string savedDocument(const vellicor::Catalog& catalog) { return documentOf(catalog).container->xmlDocument(); }

/// Where schemas are databases of their own, one database does not hold such a design.
bool leavesDatabase(std::string_view dialect, const std::string& script) {
    return dialect == "mysql" && script.find("CREATE SCHEMA") != script.npos;
}

}  // namespace

void expectImportKeepsAll(const FreshDatabase& fresh, const std::string& script, const std::string& title) {
    SCOPED_TRACE(title + "\n" + script);
    ScopedPreference runnable(prefs::runnableScripts);
    ScopedPreference blanks(prefs::autoQuoteIdentifiersWithWhitespace);
    ScopedPreference comments(prefs::usePostgresComments);
    vellicor::Catalog catalog;
    {
        const auto database = fresh();
        database->execute(script);
        catalog = readCatalog(*database);
        EXPECT_EQ(savedDocument(catalog), savedDocument(readCatalog(*database)));
    }
    EXPECT_THAT(documentOf(catalog).omissions, ::testing::IsEmpty());
    const auto document = loadDocumentData(savedDocument(catalog), "import").container;
    const std::string again = scriptOf(document->documentInfo()->exportDialect(), *document);
    SCOPED_TRACE(again);
    const auto database = fresh();
    try {
        database->execute(again);
    } catch (const DatabaseError& error) {
        FAIL() << error.reason();
    }
    EXPECT_THAT(differences(catalog, readCatalog(*database)), ::testing::IsEmpty());
}

void expectImportsKeepDocuments(const FreshDatabase& fresh, std::string_view dialect, const DocumentTraits& traits,
                                std::uint64_t count) {
    for (const std::string example : {"shop", "legacy", "warehouse"}) {
        ScopedPreference runnable(prefs::runnableScripts);
        const auto document = loadDocument(VELLICOR_SOURCE_DIR "/examples/" + example + ".xml").container;
        const std::string script = scriptOf(dialect, *document);
        if (!leavesDatabase(dialect, script)) expectImportKeepsAll(fresh, script, example);
    }
    for (std::uint64_t number = 1; number <= count && !::testing::Test::HasFatalFailure(); ++number) {
        std::string script;
        {
            ScopedPreference runnable(prefs::runnableScripts);
            const GeneratedDocument generated(number, dialect, traits);
            script = scriptOf(dialect, generated.document());
        }
        if (leavesDatabase(dialect, script)) continue;
        expectImportKeepsAll(fresh, script, "document " + std::to_string(number));
        if (::testing::Test::HasFailure()) return;
    }
}

}  // namespace vellicor::testing
