// vellicor/export/generic_exporter_dispatch.cpp — finding the operation for an object by its class name.
#include <typeinfo>

#include "vellicor/export/generic_exporter.h"
#include "vellicor/model/comment.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

using Generic = GenericSQLExporter;

constexpr TextOperation kExport[] = {
    operation<&Generic::exportSQLContainer>("SQLContainer"),
    operation<&Generic::exportSQLTable>("SQLTable"),
    operation<&Generic::exportSQLView>("SQLView"),
    operation<&Generic::exportSQLField>("SQLField"),
    operation<&Generic::exportSQLIndex>("SQLIndex"),
    operation<&Generic::exportSQLConstraint>("SQLConstraint"),
    operation<&Generic::exportSQLForeignKey>("SQLForeignKey"),
    operation<&Generic::exportSQLTableComponent>("SQLTableComponent"),
    operation<&Generic::exportSQLDocumentInfo>("SQLDocumentInfo"),
    operation<&Generic::exportSQLCanvasArea>("SQLCanvasArea"),
};
constexpr TextOperation kDrop[] = {
    operation<&Generic::dropSQLTable>("SQLTable"),           operation<&Generic::dropSQLView>("SQLView"),
    operation<&Generic::dropSQLField>("SQLField"),           operation<&Generic::dropSQLIndex>("SQLIndex"),
    operation<&Generic::dropSQLConstraint>("SQLConstraint"), operation<&Generic::dropSQLForeignKey>("SQLForeignKey"),
};
constexpr TextOperation kPostLoad[] = {
    operation<&Generic::postLoadSQLContainer>("SQLContainer"),
    operation<&Generic::postLoadSQLView>("SQLView"),
};
constexpr TextOperation kCanonicalName[] = {
    operation<&Generic::getCanonicalNameSQLTable>("SQLTable"),
    operation<&Generic::getCanonicalNameSQLView>("SQLView"),
    operation<&Generic::getCanonicalNameSQLField>("SQLField"),
    operation<&Generic::getCanonicalNameSQLIndex>("SQLIndex"),
    operation<&Generic::getCanonicalNameSQLConstraint>("SQLConstraint"),
};
constexpr TextOperation kPrologue[] = {operation<&Generic::prologueSQLContainer>("SQLContainer")};
constexpr StatementsOperation kPostLoadAsVector[] = {
    operation<&Generic::postLoadAsVectorSQLContainer>("SQLContainer"),
    operation<&Generic::postLoadAsVectorSQLTable>("SQLTable"),
    operation<&Generic::postLoadAsVectorSQLView>("SQLView"),
};
constexpr TableOperation kPostLoadAsVectorInTable[] = {
    tableOperation<&Generic::postLoadAsVectorSQLField>("SQLField"),
    tableOperation<&Generic::postLoadAsVectorSQLIndex>("SQLIndex"),
    tableOperation<&Generic::postLoadAsVectorSQLConstraint>("SQLConstraint"),
    tableOperation<&Generic::postLoadAsVectorSQLForeignKey>("SQLForeignKey"),
    tableOperation<&Generic::postLoadAsVectorSQLTableComponent>("SQLTableComponent"),
};
constexpr AlterOperation kAlter[] = {
    alterOperation<&Generic::alterSQLTableAsVector>("SQLTable"),
    alterOperation<&Generic::alterSQLViewAsVector>("SQLView"),
    alterOperation<&Generic::alterSQLFieldAsVector>("SQLField"),
    {"SQLForeignKey",
     [](Generic& exporter, SQLObject& key, SQLObject& oldKey, SQLObject* extra) {
         return exporter.alterSQLForeignKeyAsVector(as<SQLForeignKey>(&key), as<SQLForeignKey>(&oldKey), extra);
     }},
};
constexpr AlterOperation kPostLoadAlter[] = {alterOperation<&Generic::postLoadAlterSQLFieldAsVector>("SQLField")};

constexpr DispatchTables kGenericTables{.exportOperations = kExport,
                                        .dropOperations = kDrop,
                                        .postLoadOperations = kPostLoad,
                                        .canonicalNameOperations = kCanonicalName,
                                        .prologueOperations = kPrologue,
                                        .postLoadAsVectorOperations = kPostLoadAsVector,
                                        .postLoadAsVectorInTableOperations = kPostLoadAsVectorInTable,
                                        .alterOperations = kAlter,
                                        .postLoadAlterOperations = kPostLoadAlter};

/// The one look-up behind every prefix: runs the operation, or says in the log that there is none.
template <class Result>
Result genericFunction(std::string_view prefix, std::span<const Operation<Result>> DispatchTables::*family,
                       Generic& exporter, SQLObject& object) {
    if (const auto* row = findOperation(exporter.dispatchTables(), family, object.getClassType()))
        return row->run(exporter, object);
    log(text("No method available: %@ %@ %@", text("%@%@:", prefix, object.getClassType()), prefix,
             object.description()));
    return {};
}

}  // namespace

const DispatchTables& GenericSQLExporter::dispatchTables() const { return kGenericTables; }

std::string GenericSQLExporter::export_(SQLObject& object) {
    return genericFunction("export", &DispatchTables::exportOperations, *this, object);
}

std::string GenericSQLExporter::drop(SQLObject& object) {
    return genericFunction("drop", &DispatchTables::dropOperations, *this, object);
}

std::string GenericSQLExporter::postLoad(SQLObject& object) {
    return genericFunction("postLoad", &DispatchTables::postLoadOperations, *this, object);
}

std::string GenericSQLExporter::getCanonicalName(SQLObject& object) {
    return genericFunction("getCanonicalName", &DispatchTables::canonicalNameOperations, *this, object);
}

std::string GenericSQLExporter::prologue(SQLObject& object) {
    return genericFunction("prologue", &DispatchTables::prologueOperations, *this, object);
}

Statements GenericSQLExporter::postLoadAsVector(SQLObject& object) {
    return genericFunction("postLoadAsVector", &DispatchTables::postLoadAsVectorOperations, *this, object);
}

Statements GenericSQLExporter::postLoadAsVector(SQLObject& object, SQLTable& table) {
    const auto* row =
        findOperation(dispatchTables(), &DispatchTables::postLoadAsVectorInTableOperations, object.getClassType());
    return row ? row->run(*this, object, table) : Statements();
}

Statements GenericSQLExporter::alterAsVector(SQLObject& object, SQLObject& oldObject, SQLObject* extra) {
    if (const auto* row = findOperation(dispatchTables(), &DispatchTables::alterOperations, object.getClassType()))
        return row->run(*this, object, oldObject, extra);
    log(text("Unable to use selector %@", text("alter%@AsVector::", object.getClassType())));
    return {};
}

Statements GenericSQLExporter::postLoadAlterAsVector(SQLObject& object, SQLObject& oldObject) {
    const auto* row = findOperation(dispatchTables(), &DispatchTables::postLoadAlterOperations, object.getClassType());
    return row ? row->run(*this, object, oldObject, nullptr) : Statements();
}

bool GenericCreateScript::canExportObject(const SQLObject& object) {
    return !Preferences::shared().boolForKey(prefs::canIgnoreObjectsOnExport) ||
           !object.getPropertyAsBoolean(keys::ignoreWhenExporting);
}

bool GenericCreateScript::canLinkToObject(const SQLObject& object) {
    if (!Preferences::shared().boolForKey(prefs::canIgnoreObjectsOnExport)) return true;
    if (object.hasProperty(keys::cannotLinkToObject)) return !object.getPropertyAsBoolean(keys::cannotLinkToObject);
    return canExportObject(object);
}

}  // namespace vellicor
