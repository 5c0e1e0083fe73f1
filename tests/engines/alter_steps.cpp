// tests/engines/alter_steps.cpp — pairs of documents, and the statements that lead from one to the other.
#include "tests/engines/alter_steps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/dialect_text.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/export/alter_run.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor::testing {

namespace {

/// The database holds whatever the old document says.
struct OldState : SQLExportDialect {
    bool indexExists(SQLIndex&) override { return true; }
};

/// Each operation in its turn: what stands in the way goes first, what needs the rest comes last.
class AlterScript {
public:
    AlterScript(GenericSQLExporter& exporter, SQLContainer& next, SQLContainer& current)
        : _exporter(exporter), _next(next), _current(current), _run(exporter, current) {}

    std::string write() {
        forEachPair<SQLForeignKey>([this](SQLForeignKey* key, SQLForeignKey* old) {
            if (!key) add(_exporter.alterSQLForeignKeyAsVector(nullptr, old, nullptr));
        });
        forEachMissing(_current, _next, [this](SQLTable& gone) { add(_exporter.dropTableInstruction(gone)); });
        forEachMissing(_next, _current, [this](SQLTable& made) { add(_exporter.export_(made)); });
        forEachTable([this](SQLTable& now, SQLTable& old) { alterTable(now, old); });
        forEachMissing(_next, _current, [this](SQLTable& made) { add(_exporter.postLoadAsVector(made)); });
        forEachTable([this](SQLTable& now, SQLTable& old) {
            now.forEachComponent<SQLField>([&](SQLField& field) {
                if (!old.getFieldByName(field.getName())) add(_exporter.postLoadAsVector(field, now));
            });
            add(GenericSQLExporter::nodeText(_exporter.alterForeignKeyForTable(now, old)));
        });
        forEachPair<SQLForeignKey>([this](SQLForeignKey* key, SQLForeignKey* old) {
            if (key) add(_exporter.alterSQLForeignKeyAsVector(key, old, nullptr));
        });
        return _script;
    }

private:
    void add(std::string_view statement) {
        statement = trimmed(statement);
        if (statement.empty()) return;
        _script += statement;
        if (!statement.ends_with(';') && !statement.ends_with("*/")) _script += ";";
        _script += "\n";
    }
    void add(const Statements& statements) {
        for (const std::string& statement : statements) add(statement);
    }

    template <class Visit>
    void forEachMissing(SQLContainer& here, SQLContainer& there, Visit visit) {
        for (const auto& object : here.objectList())
            if (auto* found = as<SQLTable>(object.get()); found && !table(there, found->getName())) visit(*found);
    }
    template <class Visit>
    void forEachTable(Visit visit) {
        for (const auto& object : _next.objectList()) {
            auto* now = as<SQLTable>(object.get());
            if (SQLTable* old = now ? table(_current, now->getName()) : nullptr) visit(*now, *old);
        }
    }
    /// Components of a kind in the tables that stay; either side may be missing.
    template <class Component, class Visit>
    void forEachPair(SQLTable& now, SQLTable& old, Visit visit) {
        const auto other = [](SQLTable& there, Component& here) {
            return as<Component>(there.getFieldByTypeAndName(isKindOf<Component>, here.getName()));
        };
        old.forEachComponent<Component>([&](Component& gone) {
            if (!other(now, gone)) visit(static_cast<Component*>(nullptr), &gone);
        });
        now.forEachComponent<Component>([&](Component& made) { visit(&made, other(old, made)); });
    }
    template <class Component, class Visit>
    void forEachPair(Visit visit) {
        forEachTable([&](SQLTable& now, SQLTable& old) { forEachPair<Component>(now, old, visit); });
    }

    void alterTable(SQLTable& now, SQLTable& old) {
        add(_exporter.alterAsVector(now, old, nullptr));
        if (as<SQLView>(&now)) return;
        forEachPair<SQLIndex>(now, old, [&](SQLIndex* index, SQLIndex* was) { if (!index) drop(*was); });
        forEachPair<SQLField>(now, old, [&](SQLField* field, SQLField* was) {
            if (field && !was) add(_exporter.addColumn(*field));
        });
        // PostgreSQL alters the key with its columns.
        const bool altersKey = _exporter.className() != "PostgresqlExporter";
        if (altersKey) add(GenericSQLExporter::nodeText(_exporter.alterPrimaryKeyForTable(now, old)));
        forEachPair<SQLField>(now, old, [&](SQLField* field, SQLField* was) {
            if (field && was) add(_exporter.alterAsVector(*field, *was, nullptr));
            if (field && was) add(_exporter.postLoadAlterAsVector(*field, *was));
        });
        forEachPair<SQLIndex>(now, old, [&](SQLIndex* index, SQLIndex* was) { if (index) make(*index, was); });
        forEachPair<SQLField>(now, old, [&](SQLField* field, SQLField* was) { if (!field) add(_exporter.drop(*was)); });
    }
    void drop(SQLIndex& index) { add(_exporter.drop(index)); }
    void make(SQLIndex& index, SQLIndex* old) {
        auto* constraint = as<SQLConstraint>(&index);
        auto* oldConstraint = old ? as<SQLConstraint>(old) : nullptr;
        if (old && definition(index) == definition(*old)) return;
        if (constraint && oldConstraint && _exporter.supportsAlterSQLConstraint())
            add(_exporter.alterSQLConstraint(*constraint, *oldConstraint));
        else if (old && !constraint)
            add(_exporter.alterSQLIndex(index, *old));
        else {
            if (old) drop(*old);
            add(constraint ? _exporter.addSQLConstraint(*constraint) : _exporter.addIndex(index));
        }
    }
    std::string definition(SQLIndex& index) const {
        const auto* constraint = as<SQLConstraint>(&index);
        const std::string check = constraint ? constraint->getProperty(keys::checkConstraint) : "";
        return index.getIndexType() + " " + joined(index.getFieldNameList(), ",") + " " + check;
    }

    GenericSQLExporter& _exporter;
    SQLContainer& _next;
    SQLContainer& _current;
    AlterRun _run;
    std::string _script;
};

constexpr const char* kEverywhere = "SQLite mysql postgres";
constexpr const char* kServers = "mysql postgres";

struct Change {
    const char* before;
    const char* after;
    const char* engines = kServers;  ///< SQLite alters little of a table that is there
    const char* viewBefore = "";
    const char* viewAfter = "";
};

constexpr Change kChanges[] = {
    // tables
    {"a(id INTEGER pk);;gone(x INTEGER -> a.id)",
     "a(id INTEGER pk);;new(x INTEGER indexed -> a.id; index i UNIQUE (x))", kEverywhere},
    {"s.gone(x INTEGER pk)", "s.new(x INTEGER pk; y VARCHAR(20) indexed)", kEverywhere},
    // columns
    {"t(a INTEGER pk)",
     "t(a INTEGER pk; b VARCHAR(20) default=it's; c INTEGER notnull default=0; d INTEGER indexed; e INTEGER -> t.a)",
     kEverywhere},
    {"t(a INTEGER pk; b VARCHAR(20); c INTEGER)", "t(a INTEGER pk)"},
    {"t(a INTEGER default=7; b VARCHAR(20) default=7; c DATE; d VARCHAR(9); e NUMERIC(10,2))",
     "t(a VARCHAR(20) default=new; b INTEGER default=8; c TIMESTAMP; d VARCHAR(30); e NUMERIC(12,4))"},
    {"t(a INTEGER default=7; b VARCHAR(20) default=7; c VARCHAR(9) default=x)",
     "t(a VARCHAR(20); b INTEGER; c VARCHAR(12) default=x)"},
    {"t(a INTEGER; b INTEGER notnull; c INTEGER default=1; d VARCHAR(9) default=x; e INTEGER)",
     "t(a INTEGER notnull; b INTEGER; c INTEGER; d VARCHAR(9) default=it's; e INTEGER default=5)"},
    {"t(a INTEGER; b INTEGER comment=kept; c INTEGER comment=old; d INTEGER comment=gone)",
     "t(a INTEGER comment=it's; b INTEGER comment=kept; c INTEGER comment=new; d INTEGER)"},
    // indexes
    {"t(a INTEGER indexed; b INTEGER; c INTEGER indexed)", "t(a INTEGER; b INTEGER indexed; c INTEGER indexed)",
     kEverywhere},
    {"s.t(a INTEGER indexed; b INTEGER)", "s.t(a INTEGER; b INTEGER indexed)", kEverywhere},
    {"t(a INTEGER; b INTEGER; index i (a); index u UNIQUE (a); index gone (b); index gone_u UNIQUE (b))",
     "t(a INTEGER; b INTEGER; index i (b,a); index u UNIQUE (b); index new (a))", kEverywhere},
    {"s.t(a INTEGER; b INTEGER; index i (a); index gone UNIQUE (b))", "s.t(a INTEGER; b INTEGER; index i UNIQUE (a,b))",
     kEverywhere},
    // constraints
    {"t(a INTEGER; b INTEGER; constraint u UNIQUE (a); constraint gone UNIQUE (b))",
     "t(a INTEGER; b INTEGER; constraint u UNIQUE (a,b); constraint new UNIQUE (a))", kEverywhere},
    {"t(a INTEGER; constraint c CHECK [a > 0]; constraint gone CHECK [a > 1])",
     "t(a INTEGER; constraint c CHECK [a > 2]; constraint new CHECK [a < 9])"},
    // keys
    {"t(a INTEGER pk; b INTEGER notnull)", "t(a INTEGER; b INTEGER pk)"},
    {"t(a INTEGER; b INTEGER)", "t(a INTEGER pk; b INTEGER pk)"},
    {"s.t(a INTEGER pk; b INTEGER pk)", "s.t(a INTEGER pk; b INTEGER)"},
    {"a(id INTEGER pk; n INTEGER);;b(x INTEGER; y INTEGER; key k (x) -> a(id); key gone (y) -> a(id))",
     "a(id INTEGER pk; n INTEGER);;b(x INTEGER; y INTEGER; key k (y) -> a(id) delete=1; key new (x) -> a(id))"},
    {"a(id INTEGER pk);;b(x INTEGER; y INTEGER)",
     "a(id INTEGER pk);;b(x INTEGER -> a.id delete=1; y INTEGER; key k (y) -> a(id))"},
    {"a(id INTEGER pk; n INTEGER notnull);;b(x INTEGER notnull; y INTEGER indexed; index i (x,y); key k (x) -> a(id); "
     "key l (y) -> a(id))",
     "a(id INTEGER pk; n INTEGER notnull);;b(x INTEGER notnull; y INTEGER indexed; index i (x,y); key l (y) -> a(id) "
     "update=3)"},
    {"a(id INTEGER pk; n INTEGER; index u UNIQUE (id));;b(x INTEGER; key k (x) -> a(id))",
     "a(id INTEGER; n INTEGER pk; index u UNIQUE (id));;b(x INTEGER; key k (x) -> a(id))", "postgres"},
    {"t(a INTEGER unique; b INTEGER; c INTEGER pk)", "t(a INTEGER; b INTEGER unique; c INTEGER pk auto)", "mysql"},
    // views
    {"t(a INTEGER; b INTEGER)", "t(a INTEGER; b INTEGER)", kEverywhere, "SELECT a FROM t", "SELECT b, a FROM t"},
};

struct AlterRefusal {
    const char* engine;
    const char* before;
    const char* after;
    const char* words;  ///< of the engine
};

constexpr AlterRefusal kAlterRefusals[] = {
    {"SQLite", "t(a INTEGER indexed)", "t(a INTEGER)", "no such index: a_idx"},
    {"SQLite", "t(a INTEGER; index i (a))", "t(a INTEGER; index i UNIQUE (a))", "near \"ADD\": syntax error"},
    {"SQLite", "t(a INTEGER)", "t(a INTEGER; constraint c UNIQUE (a))", "near \"CONSTRAINT\": syntax error"},
    {"postgres", "t(a INTEGER indexed)", "t(a INTEGER)", "syntax error at or near \"t_a_idx\""},
    {"postgres", "t(a INTEGER; index i (a))", "t(a INTEGER; index i UNIQUE (a))", "syntax error at or near \"i\""},
    {"postgres", "s.t(a INTEGER; index i (a))", "s.t(a INTEGER)", "index \"i\" does not exist"},
    {"postgres", "t(a INTEGER; index u UNIQUE (a))", "t(a INTEGER)",
     "cannot drop index u because constraint u on table t requires it"},
    {"postgres", "t(a VARCHAR(9))", "t(a INTEGER)", "column \"a\" cannot be cast automatically to type integer"},
    {"postgres", "t(a INTEGER pk; b INTEGER)", "t(a INTEGER; b INTEGER pk)",
     "constraint \"cascade\" of relation \"t\" does not exist"},
    {"postgres", "t(a INTEGER)", "t(a INTEGER pk)", "syntax error at or near \"PRIMARY\""},
    {"mysql", "t(a INTEGER indexed)", "t(a INTEGER)", "Can't DROP INDEX `t_a_idx`; check that it exists"},
    {"mysql", "t(a INTEGER)", "t(a INTEGER; constraint c CHECK [a > 0])", "right syntax to use near ''"},
    {"mysql", "a(x INTEGER pk);;b(x INTEGER; y INTEGER; key k (x) -> a(x))",
     "a(x INTEGER pk);;b(x INTEGER; y INTEGER; key k (y) -> a(x))", "Duplicate key name 'k'"},
};

std::shared_ptr<SQLContainer> described(const char* text, const char* query) {
    auto made = document(text);
    if (*query == '\0') return made;
    auto view = SQLView::viewWithName("v");
    view->setQueryString(query);
    made->add(view);
    return made;
}

/// Statements from a document whose script has run.
std::string alterScript(Engine& engine, SQLContainer& next, SQLContainer& current) {
    const auto exporter = exporterOf(engine.dialect());
    exporter->configureForExport();
    exporter->setCurrentExporter(create<OldState>());
    return AlterScript(*exporter, next, current).write();
}

}  // namespace

void expectClassicAlterStatementsAreRefused(Engine& engine) {
    for (const AlterRefusal& row : kAlterRefusals) {
        if (row.engine != engine.dialect()) continue;
        const auto current = document(row.before);
        const auto next = document(row.after);
        engine.clear();
        {
            ScopedPreference runnable(prefs::runnableScripts);
            ASSERT_EQ(engine.run(scriptOf(engine.dialect(), *current)), "") << row.before;
        }
        const std::string script = alterScript(engine, *next, *current);
        EXPECT_THAT(engine.run(script), ::testing::HasSubstr(row.words)) << script;
    }
}

void expectAlterStatementsRun(Engine& engine) {
    ScopedPreference runnable(prefs::runnableScripts);
    ScopedPreference comments(prefs::usePostgresComments);
    for (const bool isPrefixed : {false, true}) {
        ScopedPreference prefix(prefs::addTablePrefixToIndexNamesInExport, Value::boolean(isPrefixed));
        for (const Change& change : kChanges) {
            if (std::string_view(change.engines).find(engine.dialect()) == std::string_view::npos) continue;
            const auto current = described(change.before, change.viewBefore);
            const auto next = described(change.after, change.viewAfter);
            engine.clear();
            ASSERT_EQ(engine.run(scriptOf(engine.dialect(), *current)), "") << change.before;
            const std::string script = alterScript(engine, *next, *current);
            SCOPED_TRACE(scriptOf(engine.dialect(), *current) + "\n-- then\n" + script);
            EXPECT_EQ(engine.run(script), "");
            expectCatalogOf(engine, *next);
        }
    }
}

}  // namespace vellicor::testing
