// vellicor/export/generic_exporter_view.cpp — CREATE VIEW and DROP VIEW.
#include "vellicor/export/generic_exporter_alter.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

std::string GenericCreateScript::viewCreateStringPart(std::string_view name) { return text("CREATE VIEW %@ ", name); }

std::string GenericCreateScript::exportSQLView(SQLView& view) {
    if (!supportsViews()) return {};
    const std::string definition = viewQuery(view);
    std::string_view query = trimmed(definition);
    if (query.empty()) return text("/* VIEW %@ - no query specified */", commentText(getCanonicalName(view)));
    if (query.ends_with(';')) query.remove_suffix(1);
    // Kept: two blanks stand between the name and AS.
    const std::string start = viewCreateStringPart(getCanonicalName(view));
    return text("%@ AS %@", start, endedStatement(query));
}

std::string GenericCreateScript::endedStatement(std::string_view sql) {
    return text("%@%@", sql, instructionSeparator());
}

std::string GenericCreateScript::viewQuery(SQLView& view) { return view.queryString(); }

std::string GenericCreateScript::dropSQLView(SQLView& view) {
    return text("DROP VIEW %@%@\n", getCanonicalName(view), instructionSeparator());
}

Statements GenericCreateScript::postLoadAsVectorSQLView(SQLView&) { return {}; }

std::string GenericCreateScript::postLoadSQLView(SQLView& view) { return joined(postLoadAsVectorSQLView(view), "\n"); }

Statements GenericAlterScript::alterSQLViewAsVector(SQLView& view, SQLView& oldView, SQLObject*) {
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
