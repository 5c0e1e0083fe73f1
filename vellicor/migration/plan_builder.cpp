// vellicor/migration/plan_builder.cpp — the phases, schemas, whole tables and views.
#include "vellicor/migration/plan_builder.h"

#include <algorithm>
#include <iterator>

#include "vellicor/export/sql_identifiers.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

PlanBuilder::PlanBuilder(const DatabaseShape& before, const DatabaseShape& after, const ObjectMatcher& matcher,
                         const MigrationDialect& dialect, bool rebuild)
    : _before(before),
      _after(after),
      _dialect(dialect),
      _mayRebuild(rebuild),
      _comparison(before, after, matcher, dialect) {}

void PlanBuilder::add(Phase phase, const MigrationSteps& steps) {
    auto& statements = phases[static_cast<std::size_t>(phase)];
    statements.insert(statements.end(), steps.statements().begin(), steps.statements().end());
    gaps.insert(gaps.end(), steps.gaps().begin(), steps.gaps().end());
}

void PlanBuilder::add(Phase phase, std::string about, std::string sql, Verdict verdict, std::string reason) {
    MigrationSteps steps(std::move(about));
    steps.addOrGap(std::move(sql), "it", verdict, std::move(reason));
    add(phase, steps);
}

void PlanBuilder::build() {
    for (const TableShape* table : _comparison.dropped) _droppedTables.emplace(table->name.key(), table);
    chooseRebuilds();
    openConstraints();
    if (!_dialect.rebuildsTables()) openKeys();
    dropKeysOfTables();
    addSchemas();
    dropTables();
    renameTables();
    renameColumns();
    for (const auto& pair : _comparison.pairs) addTable(*pair);
    renameConstraints();
    makeTables();
    addViews();
    addOthers();
}

void PlanBuilder::addSchemas() {
    const auto known = [](const DatabaseShape& shape, const SQLName& schema) {
        return std::ranges::find(shape.schemas, schema) != shape.schemas.end();
    };
    for (const SQLName& schema : _after.schemas)
        if (!known(_before, schema)) add(Phase::SchemasMade, "schema " + schema.text, _dialect.createSchema(schema));
    if (!_dialect.canDropSchemas()) return;
    for (const SQLName& schema : _before.schemas)
        if (!known(_after, schema))
            add(Phase::SchemasDropped, "schema " + schema.text, _dialect.dropSchema(schema), Verdict::LosesData,
                "whatever else stands in the schema goes, or stops the script");
}

void PlanBuilder::dropTables() {
    std::unordered_set<std::string> wanted;
    const bool sharesNames = _dialect.sharesIndexNames();
    const auto namesOf = [&](const TableShape& table) {
        std::vector<std::string> names{table.name.schema.key + "\n" + caseFolded(table.name.name.key)};
        if (sharesNames)
            for (const ConstraintShape& constraint : table.constraints)
                names.push_back(table.name.schema.key + "\n" + caseFolded(constraint.name.key));
        return names;
    };
    if (!_comparison.dropped.empty()) {
        for (const TableShape& table : _after.tables)
            std::ranges::copy(namesOf(table), std::inserter(wanted, wanted.end()));
        for (const ViewShape& view : _after.views)
            wanted.insert(view.name.schema.key + "\n" + caseFolded(view.name.name.key));
    }
    // The script makes a table behind those that it references; keys that lead elsewhere are gone by then.
    for (auto dropped = _comparison.dropped.rbegin(); dropped != _comparison.dropped.rend(); ++dropped) {
        const TableShape* table = *dropped;
        const auto names = namesOf(*table);
        const bool isWanted =
            std::ranges::any_of(names, [&](const std::string& name) { return wanted.contains(name); });
        add(isWanted ? Phase::TablesDroppedEarly : Phase::TablesDropped, "table " + table->name.text(),
            _dialect.dropTable(*table), Verdict::LosesData, "all rows of the table go");
        pausesKeys |= _dialect.rebuildsTables();
    }
}

void PlanBuilder::makeTables() {
    for (const TableShape* table : _comparison.added) {
        add(Phase::TablesMade, "table " + table->name.text(),
            text("CREATE TABLE %@\n%@", table->name.text(), table->body));
        for (const ConstraintShape& constraint : table->constraints)
            if (!constraint.inTable) makeConstraint(*table, constraint);
        if (!table->comment.empty())
            add(Phase::OptionsChanged, "table " + table->name.text(), _dialect.commentOnTable(*table));
        for (const ColumnShape& column : table->columns)
            if (!column.comment.empty())
                add(Phase::OptionsChanged, "column " + table->name.text() + "." + column.name.text,
                    _dialect.commentOnColumn(*table, column));
    }
}

std::unordered_set<std::string> PlanBuilder::touchedNames() const {
    std::unordered_set<std::string> names;
    const auto insert = [&](const QualifiedName& name) { names.insert(caseFolded(name.name.key)); };
    for (const TableShape* table : _comparison.dropped) insert(table->name);
    for (const auto& pair : _comparison.pairs) {
        const bool isMoved = !(pair->before->name == pair->after->name);
        if (!isMoved && !pair->isRebuilt && !pair->hasOtherColumns()) continue;
        insert(pair->before->name);
        insert(pair->after->name);
    }
    return names;
}

void PlanBuilder::addViews() {
    // A view must go when what it reads changes; what reads such a view stands behind it in the script.
    std::unordered_set<std::string> touched = touchedNames();
    const auto readsTouched = [&](const ViewShape& view) {
        return std::ranges::any_of(identifiersIn(view.statement), [&](const SQLIdentifier& word) {
            return touched.contains(caseFolded(word.name)) && caseFolded(word.name) != caseFolded(view.name.name.key);
        });
    };
    std::unordered_set<const ViewShape*> made;
    std::vector<MigrationStatement> drops;
    std::vector<MigrationSteps> renames;
    for (const auto& [before, after] : _comparison.views) {
        if (!before) {
            made.insert(after);
            continue;
        }
        const bool mustGo = !after || before->query != after->query || readsTouched(*before);
        if (!mustGo && before->name == after->name) continue;
        const std::string renamed = mustGo ? std::string() : _dialect.renameView(*before, *after);
        touched.insert(caseFolded(before->name.name.key));
        if (!renamed.empty()) {
            MigrationSteps steps("view " + after->name.text());
            steps.add(renamed);
            renames.push_back(steps);
            continue;
        }
        drops.push_back({_dialect.dropView(*before), "view " + before->name.text(), Verdict::Safe, {}});
        if (after) made.insert(after);
    }
    auto& dropped = phases[static_cast<std::size_t>(Phase::ViewsDropped)];
    dropped.insert(dropped.end(), drops.rbegin(), drops.rend());
    for (const MigrationSteps& steps : renames) add(Phase::ViewsMade, steps);
    for (const ViewShape& view : _after.views)
        if (made.contains(&view)) add(Phase::ViewsMade, "view " + view.name.text(), view.statement);
}

void PlanBuilder::addOthers() {
    const auto missing = [this](const std::vector<std::string>& here, const std::vector<std::string>& there,
                                std::string_view words) {
        for (const std::string& statement : here)
            if (std::ranges::find(there, statement) == there.end()) gaps.push_back({statement, std::string(words)});
    };
    missing(_before.others, _after.others, "the create script no longer has this statement");
    missing(_after.others, _before.others, "the create script has this statement now");
}

}  // namespace vellicor
