// vellicor/model/export_dialect.h — the root of all exporters: the set of operations, with neutral answers.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "vellicor/model/forward.h"
#include "vellicor/platform/text.h"
#include "vellicor/types/type_sizes.h"

namespace vellicor {

/// SQL statements in execution order.
using Statements = std::vector<std::string>;

/// A connection's metadata, asked while exporting straight to a live database. An exception it throws is logged.
class DatabaseMetaData {
public:
    virtual ~DatabaseMetaData() = default;
    virtual std::string databaseProductName() = 0;
    virtual std::string databaseProductVersion() = 0;
};

/// Writes SQL for one dialect. Operations answer text or statements; the empty text means that nothing is written.
/// None throws.
class SQLExportDialect : public std::enable_shared_from_this<SQLExportDialect>, public TypeSizes {
public:
    virtual void init() {}
    /// A fresh exporter of the same class.
    [[nodiscard]] virtual std::shared_ptr<SQLExportDialect> newInstance() const;

    [[nodiscard]] virtual std::string getName() const { return "undefined exporter - cocoa"; }
    virtual std::string export_(SQLObject&) { return {}; }
    virtual void setDocumentInfo(std::shared_ptr<SQLDocumentInfo>) {}
    virtual std::string postLoad(SQLObject&) { return {}; }
    virtual Statements postLoadAsVector(SQLObject&) { return {}; }
    virtual Statements alterAsVector(SQLObject& /*object*/, SQLObject& /*oldObject*/) { return {}; }
    virtual std::string dropForeignKey(SQLConnectable&) { return {}; }
    virtual std::string dropColumn(SQLField&) { return {}; }
    virtual std::string alter(SQLObject& /*object*/, SQLObject& /*oldObject*/) { return {}; }
    virtual std::string quoteIdentifier(std::string_view) { return {}; }
    virtual std::string addIndex(SQLIndex&) { return {}; }
    virtual std::string addConstraint(SQLIndex&) { return {}; }
    virtual std::string addColumn(SQLField&) { return {}; }
    virtual std::string drop(SQLObject&) { return {}; }
    [[nodiscard]] virtual std::string getInstructionSeparator() { return {}; }
    virtual std::vector<std::string> quoteAllMembers(const std::vector<std::string>& names) { return names; }
    virtual std::string getCanonicalName(SQLObject&) { return {}; }
    virtual std::string getNameForIndexWithIndex(SQLTable&, SQLIndex&) { return {}; }
    virtual std::string getNameForIndex(SQLTable&, std::string_view /*name*/, const OptionalText& /*suffix*/,
                                        bool /*quotes*/) {
        return {};
    }
    virtual void setJDBCMetaData(std::shared_ptr<DatabaseMetaData>) {}
    [[nodiscard]] virtual std::shared_ptr<SQLExportDialect> currentExporter() const { return nullptr; }
    virtual void setCurrentExporter(std::shared_ptr<SQLExportDialect>) {}
    virtual std::string dropSQLIndex(SQLIndex&) { return {}; }
    virtual std::string dropSQLField(SQLField&) { return {}; }
    /// Either side may be missing, not both.
    virtual Statements alterSQLForeignKeyAsVector(SQLForeignKey*, SQLForeignKey*, SQLObject* /*extra*/) { return {}; }
    virtual Statements postLoadAsVector(SQLObject&, SQLTable&) { return {}; }
    virtual Statements alterAsVector(SQLObject& /*object*/, SQLObject& /*oldObject*/, SQLObject* /*extra*/) {
        return {};
    }
    virtual void configureForExport() {}
    [[nodiscard]] virtual bool supportsAlterSQLConstraint() const { return false; }
    [[nodiscard]] virtual bool typeHasSize(std::string_view /*type*/) { return true; }
    [[nodiscard]] virtual bool isTypeEquivalent(std::string_view /*typeA*/, std::string_view /*typeB*/) {
        return false;
    }
    /// Whether the exporter is offered to the user.
    [[nodiscard]] virtual bool isDisplayable() const { return _isDisplayable; }

    // --- what an exporter that holds a live database's state answers; false and empty without one
    [[nodiscard]] virtual bool indexExists(SQLIndex&) { return false; }
    [[nodiscard]] virtual bool indexExistsNamed(SQLTable&, std::string_view /*name*/) { return false; }
    [[nodiscard]] virtual bool isOnlyIndexForTableForeignKey(SQLField&, std::string_view /*index*/) { return false; }
    [[nodiscard]] virtual std::string schemaNameForExport() { return {}; }
    /// The name of the class, as a live-database exporter is known by.
    [[nodiscard]] virtual std::string_view className() const { return "SQLExportDialect"; }

protected:
    bool _isDisplayable = false;
};

}  // namespace vellicor
