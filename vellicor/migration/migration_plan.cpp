// vellicor/migration/migration_plan.cpp — the way from the database of one document to that of another.
#include "vellicor/migration/migration_plan.h"

#include <algorithm>

#include "vellicor/export/generic_exporter.h"
#include "vellicor/migration/document_shape.h"
#include "vellicor/migration/plan_builder.h"
#include "vellicor/model/document_info.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

std::vector<std::string> linesOfMatchesByName(const ObjectMatcher& matcher) {
    std::vector<std::string> lines;
    const auto add = [&](const ObjectMatch& match) {
        if (match.byName && match.before && match.after && kindOfObject(*match.after) != "document")
            lines.push_back(text("%@ %@ was matched by name", kindOfObject(*match.after), pathOfObject(*match.after)));
    };
    for (const ObjectMatch& match : matcher.objects()) {
        add(match);
        const auto* before = match.before ? as<const SQLTable>(match.before) : nullptr;
        const auto* after = match.after ? as<const SQLTable>(match.after) : nullptr;
        if (before && after)
            for (const ObjectMatch& component : matcher.components(*before, *after)) add(component);
    }
    return lines;
}

void addUserStatements(const SQLContainer& before, const SQLContainer& after, std::vector<MigrationGap>& gaps) {
    const auto differs = [&](const char* key) {
        const SQLDocumentInfo* old = before.documentInfo();
        const SQLDocumentInfo* now = after.documentInfo();
        return (old ? old->getProperty(key) : std::string()) != (now ? now->getProperty(key) : std::string());
    };
    if (differs(keys::prologueExportSQL))
        gaps.push_back({"document", "its own statements in front of the script differ; run what they need by hand"});
    if (differs(keys::postExportSQL))
        gaps.push_back({"document", "its own statements behind the script differ; run what they need by hand"});
}

}  // namespace

MigrationPlan::MigrationPlan(SQLContainer& before, SQLContainer& after, GenericSQLExporter& exporter,
                             const MigrationOptions& options)
    : _exporter(exporter) {
    const std::unique_ptr<MigrationDialect> dialect = MigrationDialect::of(exporter);
    const DatabaseShape old = shapeOfDocument(before, *dialect);
    const DatabaseShape now = shapeOfDocument(after, *dialect);
    const ObjectMatcher matcher(before, after, options.match);
    _matchesByName = linesOfMatchesByName(matcher);
    PlanBuilder builder(old, now, matcher, *dialect, options.rebuild);
    builder.build();
    for (auto& phase : builder.phases) std::ranges::move(phase, std::back_inserter(_statements));
    _gaps = std::move(builder.gaps);
    addUserStatements(before, after, _gaps);
    _isRebuild = builder.isRebuild;
    _pausesKeys = builder.pausesKeys;
}

bool MigrationPlan::losesData() const {
    return std::ranges::find(_statements, Verdict::LosesData, &MigrationStatement::verdict) != _statements.end();
}

std::string MigrationPlan::script(const MigrationScriptOptions& options) const {
    if (isEmpty()) return {};
    const std::unique_ptr<MigrationDialect> dialect = MigrationDialect::of(_exporter);
    std::string script;
    const auto add = [&](const std::string& sql) {
        if (!script.empty()) script += "\n";
        script += sql + _exporter.instructionSeparator() + "\n";
    };
    const auto remark = [&](const std::string& words) { return "/* " + _exporter.commentText(words) + " */\n"; };
    const bool isTransaction = _isRebuild || (options.transaction && dialect->isTransactional());
    for (const MigrationGap& gap : _gaps) script += remark(text("Not done: %@: %@", gap.about, gap.reason));
    if (_isRebuild || _pausesKeys) add("PRAGMA foreign_keys = OFF");
    if (isTransaction) add(dialect->beginTransaction());
    for (const MigrationStatement& statement : _statements) {
        std::string sql = options.idempotent ? dialect->idempotent(statement.sql) : statement.sql;
        if (options.annotate) {
            const std::string reason = statement.reason.empty() ? "" : " (" + statement.reason + ")";
            sql = remark(text("%@: %@%@", statement.about, wordsFor(statement.verdict), reason)) + sql;
        }
        add(sql);
    }
    if (_isRebuild) {
        // A row that breaks a key undoes everything.
        add("CREATE TEMP TABLE broken_keys (found INTEGER CHECK (found = 0))");
        add("INSERT OR ROLLBACK INTO broken_keys SELECT count(*) FROM pragma_foreign_key_check");
        add("DROP TABLE broken_keys");
    }
    if (isTransaction) add(dialect->endTransaction());
    if (_isRebuild || _pausesKeys) add("PRAGMA foreign_keys = ON");
    return script;
}

}  // namespace vellicor
