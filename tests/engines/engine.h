// tests/engines/engine.h — a database engine that scripts run on, and what its catalog says.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "vellicor/export/generic_exporter.h"
#include "vellicor/model/field.h"

namespace vellicor::testing {

using Rows = std::vector<std::vector<std::string>>;

/// What a database holds, a line a fact, so that two of them compare and differences read well:
///
///     table t · view v · column t.a integer not null · primary key t (a,b) · unique t (c) · index t (a,b(10))
///     foreign key t (a) -> u (x) on delete CASCADE on update NO ACTION · check t 2 · comment t.a …
struct Catalog {
    std::set<std::string> facts;
    std::map<std::string, std::string> defaults;  ///< by "t.a": the expression as the engine spells it
    std::set<std::string> names;                  ///< of indexes and constraints
};

class Engine {
public:
    virtual ~Engine() = default;
    /// The name of its dialect in the registry.
    [[nodiscard]] virtual std::string_view dialect() const = 0;
    virtual void clear() = 0;
    /// Runs statements; answers why the engine refused one, or nothing.
    [[nodiscard]] virtual std::string run(std::string_view script) = 0;
    /// The rows of several queries; null reads as "NULL". Raises std::runtime_error when one is refused.
    [[nodiscard]] virtual std::vector<Rows> rows(const std::vector<std::string>& queries) = 0;
    [[nodiscard]] Rows query(const std::string& sql) { return rows({sql}).at(0); }
    [[nodiscard]] virtual Catalog catalog() = 0;
    [[nodiscard]] virtual std::vector<std::string> keywords() = 0;

    /// How the engine spells what the model means.
    [[nodiscard]] virtual std::string typeOf(const SQLField& field) const = 0;
    [[nodiscard]] virtual std::string tableName(const std::string& schema, const std::string& name) const = 0;
    /// Schema and name make one name, which is quoted as one.
    [[nodiscard]] virtual bool joinsSchemas() const { return false; }
    [[nodiscard]] virtual std::string foldedName(const std::string& bareName) const { return bareName; }
    [[nodiscard]] virtual std::string actionOf(std::uint64_t code) const;
    [[nodiscard]] virtual std::string textOf(const std::string& expression) const { return "(" + expression + ")"; }
    /// A boolean default as an expression.
    [[nodiscard]] virtual std::string flagOf(const std::string& value) const { return value; }
    /// A text as the column takes it in.
    [[nodiscard]] virtual std::string valueOf(const SQLField&, const std::string& literal) const { return literal; }
    [[nodiscard]] virtual bool keyImpliesNotNull() const { return true; }
    [[nodiscard]] virtual bool keepsDeferral() const { return false; }
    [[nodiscard]] virtual bool keepsComments() const { return true; }
    [[nodiscard]] virtual bool keepsChecks() const { return false; }
    [[nodiscard]] virtual bool keepsAutoIncrement() const { return true; }
    [[nodiscard]] virtual bool keepsPrefixSizes() const { return false; }
    [[nodiscard]] virtual bool keepsTablesWithoutColumns() const { return false; }
    [[nodiscard]] virtual bool keepsDefaultOf(const SQLField&) const { return true; }
    [[nodiscard]] virtual bool keepsKeyNames() const { return true; }
};

/// What the engine should hold once the script of the document has run.
[[nodiscard]] Catalog expectedCatalog(Engine& engine, SQLContainer& document);

/// Compares it with what the engine holds.
void expectCatalogOf(Engine& engine, SQLContainer& document);

/// Exports the document with the preferences as they are (runnable scripts must be on), runs the script on an empty
/// database and compares the catalogs; a script that drops its tables first runs twice. Failures show the script.
void expectDocumentOnEngine(Engine& engine, SQLContainer& document, const std::string& title);

/// A table and a column for each keyword of the engine, without any quoting asked for.
void expectKeywordsAsNames(Engine& engine, bool asTables);

}  // namespace vellicor::testing
