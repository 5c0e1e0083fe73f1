// vellicor/export/generic_exporter_view.cpp — CREATE VIEW and DROP VIEW.
#include "vellicor/export/generic_exporter.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

std::string GenericSQLExporter::viewCreateStringPart(std::string_view name) { return text("CREATE VIEW %@ ", name); }

std::string GenericSQLExporter::exportSQLView(SQLView& view) {
    if (!supportsViews()) return {};
    const std::string definition = viewQuery(view);
    std::string_view query = trimmed(definition);
    if (query.empty()) return text("/* VIEW %@ - no query specified */", commentText(getCanonicalName(view)));
    if (query.ends_with(';')) query.remove_suffix(1);
    // Kept: two blanks stand between the name and AS.
    const std::string start = viewCreateStringPart(getCanonicalName(view));
    if (writesRunnableScripts()) return text("%@ AS %@", start, endedStatement(query));
    return start + text(" AS %@%@", query, instructionSeparator());
}

std::string GenericSQLExporter::viewQuery(SQLView& view) { return view.queryString(); }

std::string GenericSQLExporter::dropSQLView(SQLView& view) {
    return text("DROP VIEW %@%@%@\n", ifExists(), getCanonicalName(view), instructionSeparator());
}

Statements GenericSQLExporter::postLoadAsVectorSQLView(SQLView&) { return {}; }

std::string GenericSQLExporter::postLoadSQLView(SQLView& view) { return joined(postLoadAsVectorSQLView(view), "\n"); }

Statements GenericSQLExporter::alterSQLViewAsVector(SQLView& view, SQLView& oldView, SQLObject*) {
    log("altering SQLView");
    const std::string created = exportSQLView(view);
    if (created == exportSQLView(oldView)) return {};
    Statements statements;
    if (requiresOwnershipForAlter()) statements.push_back(changeOwnerToCurrent(oldView));
    if (!canUpdateViewWithStandardCommand()) statements.push_back(dropSQLView(oldView));
    statements.push_back(created);
    return statements;
}

}  // namespace vellicor
