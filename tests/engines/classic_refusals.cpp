// tests/engines/classic_refusals.cpp — the places that docs/runnable-scripts.md lists, on the engines.
#include "tests/engines/classic_refusals.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "tests/support/dialect_text.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor::testing {

namespace {

using Preparation = void (*)(SQLContainer&);

void addView(SQLContainer& document, const char* name, const char* query) {
    auto view = SQLView::viewWithName(name);
    view->setQueryString(query);
    document.add(view);
}
template <class SetUp>
void addInfo(SQLContainer& document, SetUp setUp) {
    auto info = create<SQLDocumentInfo>();
    setUp(*info);
    document.add(info);
}
void beginWith(SQLContainer& document, const char* sql) {
    addInfo(document, [sql](SQLDocumentInfo& info) { info.setPrologueExportSQL(sql); });
}
void dropping(SQLContainer& document) {
    addInfo(document, [](SQLDocumentInfo& info) { info.setDropTableOption(true); });
}
void droppingView(SQLContainer& document) {
    addView(document, "v", "SELECT a FROM t");
    dropping(document);
}
/// Of a database that holds the document already.
void droppingAgain(SQLContainer& document) { dropping(document); }
void viewsInWrongOrder(SQLContainer& document) {
    addView(document, "v", "SELECT a FROM w");
    addView(document, "w", "SELECT a FROM t");
}
void viewEndsInRemark(SQLContainer& document) {
    addView(document, "v", "SELECT a FROM t -- all");
    addView(document, "w", "SELECT a FROM t");
}
void qualifiedView(SQLContainer& document) { addView(document, "v", "SELECT a FROM s.t"); }
void statementWithoutEnd(SQLContainer& document) { beginWith(document, "SELECT 1"); }
void statementWithRemark(SQLContainer& document) { beginWith(document, "SELECT 1 -- one; (two)\n;"); }
void statementForSchemas(SQLContainer& document) { beginWith(document, "CREATE SCHEMA s;"); }
void quoteInKeyName(SQLContainer& document) { table(document, "t")->setProperty(keys::primaryKeyName, "a\"key"); }
void commentedTable(SQLContainer& document) { table(document, "t")->setComment("it's"); }

struct Refusal {
    const char* document;
    const char* words;  ///< of the engine
    Preparation prepare = nullptr;
    const char* preference = nullptr;  ///< that is on
};

constexpr Refusal kSQLite[] = {
    {"t(a INTEGER comment=ends*/early)", "near \"*\": syntax error"},
    {"t(a VARCHAR(9) default=it's)", "near \"s\": syntax error"},
    {"t(a INTEGER expression=1~+~1)", "near \"+\": syntax error"},
    {"t(order INTEGER)", "near \"order\": syntax error"},
    {"t(a-b INTEGER)", "near \"-\": syntax error"},
    {"t(1a INTEGER)", "unrecognized token: \"1a\""},
    {"t()", "near \")\": syntax error"},
    {"t(a INTEGER; key k () -> t())", "near \")\": syntax error"},
    {"t(a INTEGER; index i (a));;u(a INTEGER; index i (a))", "index i already exists"},
    {"t(a INTEGER; index u (a));;u(a INTEGER)", "there is already a table named u"},
    {"t(a INTEGER; index i FULLTEXT (a))", "near \"FULLTEXT\": syntax error"},
    {"s.t(a INTEGER)", "unknown database s"},
    {"s.t(a INTEGER)", "unknown database s", qualifiedView},
    {"t(a INTEGER)", "near \"SCHEMA\": syntax error", statementForSchemas},
    {"t(a INTEGER)", "near \"CREATE\": syntax error", statementWithoutEnd},
    {"t(a INTEGER)", "near \"(\": syntax error", statementWithRemark},
    {"t(a INTEGER)", "near \"CREATE\": syntax error", viewEndsInRemark},
    {"t(a INTEGER)", "no such table: t", dropping},
    {"a(x INTEGER pk; key k (x) -> b(x));;b(x INTEGER pk; key l (x) -> a(x))", "FOREIGN KEY constraint failed",
     droppingAgain},
};
constexpr Refusal kPostgreSQL[] = {
    {"t(a INTEGER pk)", "syntax error at or near \"PRIMARY\""},
    {"t(a INTEGER pk)", "unterminated quoted identifier", quoteInKeyName},
    {"t(a INTEGER comment=ends*/early)", "syntax error at or near \"*/\""},
    {"t(a INTEGER comment=x; b INTEGER)", "syntax error at or near \"COMMENT\"", nullptr, prefs::usePostgresComments},
    {"t(a INTEGER comment=it's)", "invalid command \\'s'", nullptr, prefs::usePostgresComments},
    {"t(a VARCHAR(9) default=it's)", "syntax error at or near \"s\""},
    {"t(a BOOLEAN default=0)", "column \"a\" is of type boolean but default expression is of type integer"},
    {"t(a UUID default=00000000-0000-0000-0000-000000000001)",
     "column \"a\" is of type uuid but default expression is of type integer"},
    {"t(a JSON default={})", "syntax error at or near \"{\""},
    {"t(a INTEGER auto default=5)", "multiple default values specified for column \"a\" of table \"t\""},
    {"t(order INTEGER)", "syntax error at or near \"order\""},
    {"t(a-b INTEGER)", "syntax error at or near \"-\""},
    {"t(a INTEGER; index i (a));;u(a INTEGER; index i (a))", "relation \"i\" already exists"},
    {"t(a INTEGER; index u (a));;u(a INTEGER)", "relation \"u\" already exists"},
    {"t(a INTEGER; index u UNIQUE (a); constraint U CHECK [a > 0])",
     "constraint \"u\" for relation \"t\" already exists"},
    {"t(a INTEGER; index i FULLTEXT (a))", "syntax error at or near \"FULLTEXT\""},
    {"t(a INTEGER; constraint c FULLTEXT (a))", "syntax error at or near \"FULLTEXT\""},
    {"t(a INTEGER; index i UNIQUE ())", "syntax error at or near \";\""},
    {"t(a INTEGER; b INTEGER; key k (b) -> t(a); index u UNIQUE (a))",
     "there is no unique constraint matching given keys"},
    {"s.t(a INTEGER)", "schema \"s\" does not exist"},
    {"t(a INTEGER)", "syntax error at or near \"CREATE\"", statementWithoutEnd},
    {"t(a INTEGER)", "syntax error at or near \"(\"", statementWithRemark},
    {"t(a INTEGER)", "syntax error at or near \"CREATE\"", viewEndsInRemark},
    {"t(a INTEGER)", "relation \"w\" does not exist", viewsInWrongOrder},
    {"t(a INTEGER)", "view \"v\" does not exist", droppingView},
};
constexpr Refusal kMariaDB[] = {
    {"t(a INTEGER expression=1~+~1)", "right syntax to use near '+ 1"},
    {"t(a TIMESTAMP default=2024-02-29~12:00:00)", "right syntax to use near '-02-29 12:00:00"},
    {"t(a JSON default={\"a\":1})", "right syntax to use near '\"a\":1}"},
    {"t(a DATE default=CURRENT_DATE)", "Invalid default value for 'a'"},
    {"t(a INTEGER notnull default=NULL)", "Invalid default value for 'a'"},
    {"t(a INTEGER pk; b INTEGER auto indexed)", "there can be only one auto column and it must be defined as a key"},
    {"t(a TEXT pk)", "BLOB/TEXT column 'a' used in key specification without a key length"},
    {"t(order INTEGER)", "right syntax to use near 'order INTEGER"},
    {"t(a-b INTEGER)", "right syntax to use near '-b INTEGER"},
    {"t()", "right syntax to use near ')'"},
    {"t(a INTEGER; index i NONSENSE (a))", "right syntax to use near 'NONSENSE INDEX i ON t (a)'"},
    {"t(a INTEGER pk; b INTEGER; key a-b (b) -> t(a))", "right syntax to use near '-b (`b`)", nullptr,
     prefs::quoteIdentifiersOnExport},
    {"t(a INTEGER pk);;u(b INTEGER; key k (b) -> t(a));;v(b INTEGER; key k (b) -> t(a))",
     "errno: 121 \"Duplicate key on write or update\""},
    {"t(a INTEGER; b INTEGER; key k (b) -> t(a); index u UNIQUE (a))",
     "errno: 150 \"Foreign key constraint is incorrectly formed\""},
    {"s.t(a INTEGER)", "Unknown database 's'"},
    {"t(a INTEGER)", "right syntax to use near 'CREATE TABLE t", statementWithoutEnd},
    {"t(a INTEGER)", "right syntax to use near '(two)", statementWithRemark},
    {"t(a INTEGER)", "right syntax to use near 'CREATE OR REPLACE VIEW w", viewEndsInRemark},
    {"t(a INTEGER)", "Table 'vellicor.w' doesn't exist", viewsInWrongOrder},
    {"t(a INTEGER)", "Unknown VIEW: 'vellicor.v'", droppingView},
    {"a(x INTEGER pk; key k (x) -> b(x));;b(x INTEGER pk; key l (x) -> a(x))", "Cannot delete or update a parent row",
     droppingAgain},
};

constexpr const char* kRowsOfTheCircle =
    "PRAGMA foreign_keys = OFF; INSERT INTO a VALUES (1); INSERT INTO b VALUES (1); PRAGMA foreign_keys = ON";

struct Misreading {
    const char* dialect;
    const char* document;
    const char* query;
    const char* classic;
    const char* runnable;
    Preparation prepare = nullptr;
    const char* insert = "INSERT INTO t DEFAULT VALUES;\n";
};

constexpr Misreading kMisreadings[] = {
    // the comment ends early, and the rest runs
    {"SQLite", "t(a INTEGER comment=x*/b~INTEGER,/*)", "SELECT count(*) FROM pragma_table_info('t')", "2", "1"},
    {"postgres", "t(a INTEGER comment=x*/b~INTEGER,/*)",
     "SELECT count(*) FROM information_schema.columns WHERE table_name = 't'", "2", "1"},
    {"SQLite", "t(a BOOLEAN default=true)", "SELECT typeof(a) FROM t", "text", "integer"},
    {"SQLite", "t(a BIGINT pk auto; b INTEGER)", "SELECT typeof(a) FROM t", "null", "integer"},
    {"postgres", "t(a BIT(4))",
     "SELECT character_maximum_length FROM information_schema.columns WHERE table_name = 't'", "1", "4"},
    {"postgres", "t(a TIMESTAMP default=now())",
     "SELECT column_default FROM information_schema.columns WHERE table_name = 't'", "timestamp without time zone",
     "now()"},
    {"mysql", "t(a VARCHAR(20) default=back\\slash)", "SELECT a FROM t", "backslash", "back\\slash", nullptr,
     "INSERT INTO t VALUES ();\n"},
    {"mysql", "t(a INTEGER)", "SELECT table_comment FROM information_schema.tables WHERE table_name = 't'", "it\\'s",
     "it's", commentedTable, ""},
};

std::shared_ptr<SQLContainer> prepared(const char* text, Preparation prepare) {
    auto made = document(text);
    if (prepare) prepare(*made);
    return made;
}

std::string scriptFor(Engine& engine, const char* text, Preparation prepare, bool isRunnable) {
    ScopedPreference runnable(prefs::runnableScripts, Value::boolean(isRunnable));
    return scriptOf(engine.dialect(), *prepared(text, prepare));
}

}  // namespace

void expectClassicScriptsAreRefused(Engine& engine) {
    std::span<const Refusal> rows = kSQLite;
    if (engine.dialect() == "postgres") rows = kPostgreSQL;
    if (engine.dialect() == "mysql") rows = kMariaDB;
    for (const Refusal& row : rows) {
        std::optional<ScopedPreference> preference;
        if (row.preference) preference.emplace(row.preference);
        for (const bool isRunnable : {false, true}) {
            const std::string script = scriptFor(engine, row.document, row.prepare, isRunnable);
            SCOPED_TRACE(script);
            engine.clear();
            if (row.prepare == droppingAgain) {
                EXPECT_EQ(engine.run(scriptFor(engine, row.document, row.prepare, true)), "");
                const bool mindsRowsOnly = engine.dialect() == "SQLite";
                EXPECT_EQ(mindsRowsOnly ? engine.run(kRowsOfTheCircle) : "", "");
            }
            const std::string words = engine.run(script);
            if (isRunnable)
                EXPECT_EQ(words, "");
            else
                EXPECT_THAT(words, ::testing::HasSubstr(row.words));
        }
    }
}

void expectClassicScriptsAreMisread(Engine& engine) {
    for (const Misreading& row : kMisreadings) {
        if (row.dialect != engine.dialect()) continue;
        for (const bool isRunnable : {false, true}) {
            const std::string script = scriptFor(engine, row.document, row.prepare, isRunnable);
            SCOPED_TRACE(script);
            engine.clear();
            ASSERT_EQ(engine.run(script + row.insert), "");
            const std::string value = engine.query(row.query).at(0).at(0);
            EXPECT_THAT(value, ::testing::HasSubstr(isRunnable ? row.runnable : row.classic));
        }
    }
}

}  // namespace vellicor::testing
