// vellicor/export/generic_exporter.h — create and alter scripts in a neutral dialect; the parent of every dialect.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "vellicor/export/generic_exporter_alter.h"

namespace vellicor {

/// Turns a document into a create script and the difference of two objects into ALTER statements. Dialects override
/// single answers and operations; what they do not override behaves as here. An exporter belongs to one thread.
///
/// What a dialect may override stands in the headers that this class is built from, most wanted first:
/// `generic_exporter_answers.h`, `generic_exporter_names.h`, `generic_exporter_create.h`, `generic_exporter_alter.h`.
class GenericSQLExporter : public GenericAlterScript {
public:
    void init() override;
    static std::shared_ptr<GenericSQLExporter> exporter() { return create<GenericSQLExporter>(); }
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override {
        return create<GenericSQLExporter>();
    }
    [[nodiscard]] std::string_view className() const override { return "GenericSQLExporter"; }
    [[nodiscard]] std::string getName() const override { return "Generic SQL"; }
    [[nodiscard]] bool isDisplayable() const override { return true; }
    /// True for exactly this class; a dialect says so itself.
    [[nodiscard]] bool supportsViews() const override;
    /// The generic words for exactly this class.
    [[nodiscard]] std::span<const std::string_view> reservedWords() const override;

    // === dispatch by class name (generic_exporter_dispatch.cpp) ===
    std::string export_(SQLObject& object) override;
    std::string drop(SQLObject& object) override;
    std::string postLoad(SQLObject& object) override;
    std::string getCanonicalName(SQLObject& object) override;
    std::string prologue(SQLObject& object) override;
    Statements postLoadAsVector(SQLObject& object) override;
    /// Silent when the class has no such operation.
    Statements postLoadAsVector(SQLObject& object, SQLTable& table) override;
    using SQLExportDialect::alterAsVector;  // Kept: the form with two arguments stays the root's, which answers nothing
    Statements alterAsVector(SQLObject& object, SQLObject& oldObject, SQLObject* extra) override;
    /// Silent when the class has no such operation.
    Statements postLoadAlterAsVector(SQLObject& object, SQLObject& oldObject);
    [[nodiscard]] const DispatchTables& dispatchTables() const override;
};

}  // namespace vellicor
