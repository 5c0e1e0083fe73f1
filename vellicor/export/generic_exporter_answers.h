// vellicor/export/generic_exporter_answers.h — the answers by which dialects differ, with those of the neutral one.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "vellicor/export/dispatch.h"
#include "vellicor/model/connectable.h"
#include "vellicor/model/export_dialect.h"

namespace vellicor {

/// What dialects override most: every operation asks here before it writes.
class GenericAnswers : public SQLExportDialect {
public:
    // === the script
    [[nodiscard]] virtual std::string instructionSeparator() { return ";"; }
    [[nodiscard]] std::string getInstructionSeparator() override { return instructionSeparator(); }
    [[nodiscard]] virtual bool supportsIfNotExists() const { return false; }
    [[nodiscard]] virtual bool supportsIfNotExistsSQLIndex() const { return false; }
    [[nodiscard]] virtual bool supportsViews() const { return false; }
    [[nodiscard]] virtual bool canUpdateViewWithStandardCommand() const { return false; }
    [[nodiscard]] virtual bool requiresOwnershipForAlter() const { return false; }

    // === columns and types
    [[nodiscard]] virtual std::string autoIncrementKeyword() { return "AUTO_INCREMENT"; }
    [[nodiscard]] virtual bool supportsInlineAutoIncrement() const { return true; }
    /// 0 leaves the case of type names as it is.
    [[nodiscard]] virtual int requiredCaseForTypes() const { return 0; }
    [[nodiscard]] virtual bool fieldTypeAllowsTimeZone(std::string_view) { return true; }
    [[nodiscard]] virtual bool isStringType(std::string_view type);

    // === indexes
    [[nodiscard]] virtual std::string getIndexKeyword(SQLIndex&) { return "INDEX"; }
    /// False where indexes are statements of their own.
    [[nodiscard]] virtual bool indexesStandInTable() const { return true; }
    [[nodiscard]] virtual bool supportsIndexPostLoad() const { return false; }
    [[nodiscard]] virtual bool useIndexPrefixSize() const { return false; }
    [[nodiscard]] virtual bool supportsIndexPrefixSize() const { return false; }
    [[nodiscard]] virtual bool shouldPrefixFieldLevelIndexNames() const { return true; }
    [[nodiscard]] virtual bool dialectRequiresGloballyUniqueIndexes() const { return false; }
    [[nodiscard]] virtual bool checkIndexValid(SQLIndex&) { return true; }
    [[nodiscard]] virtual bool supportsAlterSQLIndex() const { return true; }
    [[nodiscard]] virtual std::string prefixForIndexedProperty(SQLField&) { return {}; }

    // === keys and constraints
    [[nodiscard]] virtual bool supportsCheckConstraints() const { return true; }
    [[nodiscard]] virtual bool supportsDropSQLConstraint() const { return true; }
    [[nodiscard]] virtual bool usePrimaryKeyConstraintName() const { return true; }
    [[nodiscard]] virtual bool supportsForeignKeys() const { return true; }
    /// True where foreign keys stand in CREATE TABLE rather than in statements behind all tables.
    [[nodiscard]] virtual bool keysStandInTable() const { return false; }
    /// False where keys of a table that is there neither come nor go.
    [[nodiscard]] virtual bool canAlterConstraints() const { return true; }
    [[nodiscard]] virtual bool addForeignKeyConstraintName() const { return true; }
    [[nodiscard]] virtual std::uint64_t defaultDeleteAction() const { return action::noAction; }
    [[nodiscard]] virtual std::uint64_t defaultUpdateAction() const { return action::noAction; }

    // === names and values
    [[nodiscard]] virtual std::string getQuoteIdentifierString() const { return "'"; }
    [[nodiscard]] virtual std::string getStartingQuoteIdentifierString() const { return getQuoteIdentifierString(); }
    [[nodiscard]] virtual std::string getEndingQuoteIdentifierString() const { return getQuoteIdentifierString(); }
    [[nodiscard]] virtual std::string getQuoteDefaultString() const { return "'"; }
    [[nodiscard]] virtual bool replaceSpacesInIdentifier() const { return true; }
    /// Upper-case words in the dialect's own order. Kept: a dialect without a list of its own quotes no words; it never
    /// inherits the generic ones.
    [[nodiscard]] virtual std::span<const std::string_view> reservedWords() const { return {}; }

    // === for exporters of a kind of their own
    virtual void configureDialectSpecficInterface() {}
    /// The rows by which operations are found; a subclass that adds operations answers its own table.
    [[nodiscard]] virtual const DispatchTables& dispatchTables() const = 0;
};

}  // namespace vellicor
