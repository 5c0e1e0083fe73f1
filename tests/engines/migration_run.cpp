// tests/engines/migration_run.cpp — a migration on an engine.
#include "tests/engines/migration_run.h"

#include <algorithm>
#include <map>

#include "tests/support/dialect_text.h"
#include "vellicor/migration/migration_plan.h"
#include "vellicor/migration/object_matcher.h"
#include "vellicor/model/view.h"

namespace vellicor::testing {

namespace {

std::string difference(const Catalog& expected, const Catalog& actual) {
    std::string words;
    const auto compare = [&](const std::set<std::string>& a, const std::set<std::string>& b, const char* what) {
        for (const std::string& fact : a)
            if (!b.contains(fact)) words += std::string("missing ") + what + ": " + fact + "\n";
        for (const std::string& fact : b)
            if (!a.contains(fact)) words += std::string("not wanted ") + what + ": " + fact + "\n";
    };
    compare(expected.facts, actual.facts, "fact");
    compare(expected.names, actual.names, "name");
    const auto defaultsOf = [](const Catalog& catalog) {
        std::set<std::string> facts;
        for (const auto& [column, value] : catalog.defaults) facts.insert(column + " = " + value);
        return facts;
    };
    compare(defaultsOf(expected), defaultsOf(actual), "default");
    return words;
}

struct KeptColumn {
    std::string before;  // a query
    std::string after;
    std::string name;
};

std::vector<KeptColumn> keptColumns(Engine& engine, SQLContainer& before, SQLContainer& after) {
    const auto exporter = exporterOf(engine.dialect());
    exporter->configureForExport();
    const ObjectMatcher matcher(before, after);
    std::vector<KeptColumn> kept;
    const auto queryFor = [&](SQLTable& table, SQLField& column) {
        return "SELECT " + exporter->quoteIdentifier(column.getName()) + " FROM " + exporter->getCanonicalName(table);
    };
    for (const ObjectMatch& match : matcher.objects()) {
        auto* old = match.before ? as<SQLTable>(match.before) : nullptr;
        auto* now = match.after ? as<SQLTable>(match.after) : nullptr;
        if (!old || !now || as<SQLView>(old)) continue;
        for (const ObjectMatch& component : matcher.components(*old, *now)) {
            auto* oldColumn = component.before ? as<SQLField>(component.before) : nullptr;
            auto* column = component.after ? as<SQLField>(component.after) : nullptr;
            if (!oldColumn || !column || oldColumn->getType() != column->getType() || oldColumn->getNotNull() != column->getNotNull()) continue;
            kept.push_back({queryFor(*old, *oldColumn), queryFor(*now, *column), now->getName() + "." + column->getName()});
        }
    }
    return kept;
}

std::vector<Rows> valuesOf(Engine& engine, const std::vector<KeptColumn>& columns, std::string KeptColumn::*query) {
    std::vector<std::string> queries;
    for (const KeptColumn& column : columns) queries.push_back(column.*query);
    std::vector<Rows> values = queries.empty() ? std::vector<Rows>() : engine.rows(queries);
    for (Rows& rows : values) std::ranges::sort(rows);
    return values;
}

Catalog catalogOf(Engine& engine, SQLContainer& document, std::string& trouble) {
    engine.clear();
    const std::string refusal = engine.run(scriptOf(engine.dialect(), document));
    if (!refusal.empty()) trouble = "a fresh create fails: " + refusal + scriptOf(engine.dialect(), document);
    return engine.catalog();
}

bool mayFail(const MigrationPlan& plan) {
    return std::ranges::any_of(plan.statements(), [](const MigrationStatement& statement) {
        return statement.verdict == Verdict::MayFail || statement.verdict == Verdict::LosesData;
    });
}

}  // namespace

MigrationRun runMigration(Engine& engine, SQLContainer& before, SQLContainer& after, const std::string& rows) {
    MigrationRun run;
    const auto exporter = exporterOf(engine.dialect());
    const MigrationOptions options{.rebuild = true};
    const MigrationPlan plan(before, after, *exporter, options);
    for (const MigrationGap& gap : plan.gaps()) run.gaps.push_back(gap.about + ": " + gap.reason);
    const std::string script = plan.script({.annotate = true});
    const auto scripts = [&] { return "\n--- OLD\n" + scriptOf(engine.dialect(), before) + rows + "\n--- ALTER\n" + script; };

    const Catalog expected = catalogOf(engine, after, run.trouble);
    if (!run.trouble.empty()) return run;
    // The way back, while the new database is there without rows.
    const MigrationPlan back(after, before, *exporter, options);
    const std::string down = back.script();
    const std::string downRefusal = down.empty() ? "" : engine.run(down);
    const Catalog returned = engine.catalog();
    const Catalog old = catalogOf(engine, before, run.trouble);
    if (!run.trouble.empty()) return run;
    if (!downRefusal.empty()) run.trouble = "the way back fails: " + downRefusal + "\n" + down;
    else if (const std::string words = difference(old, returned); !words.empty() && back.isComplete())
        run.trouble = "the way back leads elsewhere:\n" + words + "\n" + down;
    if (!run.trouble.empty()) {
        run.trouble += "\n--- NEW\n" + scriptOf(engine.dialect(), after);
        return run;
    }

    if (const std::string refusal = engine.run(rows); !refusal.empty()) {
        run.trouble = "the rows are refused: " + refusal + scripts();
        return run;
    }
    const auto kept = keptColumns(engine, before, after);
    const auto values = valuesOf(engine, kept, &KeptColumn::before);
    std::string refusal = script.empty() ? "" : engine.run(script);
    if (!refusal.empty() && mayFail(plan) && !rows.empty()) {
        run.refusedRows = true;
        std::string none;
        (void)catalogOf(engine, before, none);
        refusal = engine.run(script);
    }
    if (!refusal.empty()) {
        run.trouble = "refused: " + refusal + scripts();
        return run;
    }
    const std::string words = difference(expected, engine.catalog());
    if (!words.empty() && plan.isComplete()) run.trouble = words + scripts();
    if (!run.refusedRows) {
        const auto present = valuesOf(engine, kept, &KeptColumn::after);
        for (std::size_t i = 0; i < kept.size(); ++i)
            if (present[i] != values[i]) run.trouble += "the values of " + kept[i].name + " changed" + scripts();
    }
    if (!MigrationPlan(after, after, *exporter, options).isEmpty()) run.trouble += "a second plan is not empty" + scripts();
    return run;
}

std::vector<std::string> unnoticedStatements(Engine& engine, SQLContainer& before, SQLContainer& after) {
    const auto exporter = exporterOf(engine.dialect());
    const MigrationPlan plan(before, after, *exporter, {.rebuild = true});
    std::string trouble;
    const Catalog expected = catalogOf(engine, after, trouble);
    std::vector<std::string> unnoticed;
    for (std::size_t without = 0; without < plan.statements().size(); ++without) {
        (void)catalogOf(engine, before, trouble);
        std::string script;
        for (std::size_t i = 0; i < plan.statements().size(); ++i)
            if (i != without) script += plan.statements()[i].sql + ";\n";
        const bool isNoticed = !engine.run(script).empty() || !difference(expected, engine.catalog()).empty();
        if (!isNoticed) unnoticed.push_back(plan.statements()[without].sql);
    }
    return unnoticed;
}

}  // namespace vellicor::testing
