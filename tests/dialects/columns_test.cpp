// tests/dialects/columns_test.cpp — how each dialect defines a column and brings another one to that definition.
#include <gtest/gtest.h>

#include "tests/support/dialect_text.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor::testing {
namespace {

struct Definition {
    const char* dialect;
    const char* part;
    const char* expected;
};

TEST(Columns, AreDefinedByTheRulesOfTheirDialect) {
    const Definition classic[] = {
        {"mysql", "a varchar", "a varchar(255)"},
        {"mysql", "a text(5)", "a TEXT"},
        {"mysql", "a geometry(2)", "a geometry(2)"},
        {"mysql", "a enum('x','y')", "a enum('x','y')"},
        {"mysql", "a int pk auto notnull unique comment=x", "a int NOT NULL AUTO_INCREMENT UNIQUE  COMMENT 'x'"},
        {"mysql", "a int auto", "a int"},  // neither key nor index
        {"mysql", "a TIMESTAMP default=null", "a TIMESTAMP NULL  DEFAULT null"},
        {"mysql", "a text default=x", "a TEXT"},  // has no default
        {"mysql", "a varchar(2) default='", R"(a varchar(2) DEFAULT '\'')"},
        {"postgres", "id bigint auto", "id BIGSERIAL"},
        {"postgres", "id INT(11) auto", "id SERIAL"},
        {"postgres", "a integer(11)", "a integer"},
        {"SQLite", "id integer pk auto", "id INTEGER PRIMARY KEY"},  // the type must be spelt INTEGER
        {"SQLite", "id INTEGER pk auto", "id INTEGER PRIMARY KEY AUTOINCREMENT"},
        {"SQLite", "a text notnull unique default=x check=a<>'' ", "a TEXT DEFAULT 'x' NOT NULL UNIQUE CHECK (a<>'')"},
        {"SQLite", "a text default=Current_Timestamp", "a TEXT DEFAULT Current_Timestamp"},
        {"SQLite", "a text default=current_time_x", "a TEXT DEFAULT 'current_time_x'"},
        {"SQLServer", "a varchar(50)", "a varchar(50)"},
        {"SQLServer", "a strange(3)", "a strange(3)"},
        {"SQLServer", "a int default=NULL", "a INT DEFAULT NULL"},
        {"SQLServer", "a int notnull check=a>0 auto", "a INT NOT NULL CHECK (a>0) IDENTITY"},
        {"FileMaker", "a VARCHAR", "\"a\" VARCHAR"},
        {"FileMaker", "a BLOB", "\"a\" container"},
        {"FileMaker", "a numeric(9)", "\"a\" number"},
        {"FileMaker", "a date pk notnull unique default=x", "\"a\" date PRIMARY KEY DEFAULT 'x' NOT NULL UNIQUE"},
    };
    const Definition runnable[] = {
        {"SQLServer", "a varchar(9) default=x~y", "a varchar(9) DEFAULT 'x y'"},
        {"SQLServer", "a int default=5", "a INT DEFAULT 5"},
        {"SQLServer", "a datetime default=getdate()", "a DATETIME DEFAULT getdate()"},
    };
    for (const auto& [dialect, part, expected] : classic) EXPECT_EQ(columnOf(dialect, part), expected) << dialect;
    ScopedPreference preference(prefs::runnableScripts);
    for (const auto& [dialect, part, expected] : runnable) EXPECT_EQ(columnOf(dialect, part), expected) << dialect;
}

TEST(Columns, AreAlteredByTheRulesOfTheirDialect) {
    const struct {
        const char* dialect;
        const char* next;
        const char* current;
        const char* expected;  // the statements, empty ones too, with a bar between
    } rows[] = {
        {"mysql", "a int", "a int", "|"},
        {"mysql", "a bigint", "a int", "ALTER TABLE t CHANGE a a bigint|"},
        {"mysql", "a int comment=x", "a int", "ALTER TABLE t CHANGE a a int COMMENT 'x'|"},
        {"mysql", "a BOOL", "a TINYINT", "|"},
        {"mysql", "a bool", "a tinyint", "ALTER TABLE t CHANGE a a bool|"},  // the words are exact
        {"mysql", "a int", "a int unique", "ALTER TABLE t CHANGE a a int|ALTER TABLE t DROP INDEX a"},
        {"postgres", "a int", "a int", "||||"},
        {"postgres", "a bigint", "a int", "|ALTER TABLE t ALTER COLUMN a TYPE bigint|||"},
        {"postgres", "a int notnull", "a int", "||ALTER TABLE t ALTER COLUMN a SET NOT NULL||"},
        {"postgres", "a int", "a int notnull", "||ALTER TABLE t ALTER COLUMN a DROP NOT NULL||"},
        {"postgres", "a text default=x", "a text", "|||ALTER TABLE t ALTER COLUMN a SET DEFAULT 'x'|"},
        {"postgres", "a text", "a text default=x", "|||ALTER TABLE t ALTER COLUMN a DROP DEFAULT|"},
        {"SQLServer", "a int", "a int", ""},
        {"SQLServer", "a bigint", "a int", "ALTER TABLE t ALTER COLUMN a bigint NULL"},
        {"SQLServer", "a int notnull", "a int", "ALTER TABLE t ALTER COLUMN a int NOT NULL"},
        {"SQLServer", "a int pk", "a int pk notnull", ""},  // a key is not null anyway
        {"SQLServer", "a int pk", "a int", "ALTER TABLE t ALTER COLUMN a int NOT NULL"},
        {"SQLServer", "a int pk notnull", "a int notnull", ""},
        {"Oracle", "a int", "a int", "|"},
        {"Oracle", "a int default=5", "a int", "|ALTER TABLE t MODIFY a DEFAULT '5'"},
        {"Oracle", "a int", "a int default=5", "|ALTER TABLE t MODIFY a DEFAULT NULL"},
        {"Oracle", "a number", "a int", "ALTER TABLE t MODIFY a number|"},
        {"Oracle", "a int notnull", "a int", "ALTER TABLE t MODIFY a int NOT NULL|"},
        {"Oracle", "a int", "a int notnull", "ALTER TABLE t MODIFY a int NULL|"},
        {"Oracle", "a int pk", "a int", "ALTER TABLE t MODIFY a int NOT NULL|"},
        {"FileMaker", "a varchar(9)", "a date", "ALTER TABLE \"t\" ALTER COLUMN \"a\" \"a\" varchar(9)"},
        {"FileMaker", "a DATE", "a date", ""},
    };
    for (const auto& row : rows) {
        const std::string statements = altered(row.next, row.current, [&](SQLField& next, SQLField& current) {
            return joined(exporterOf(row.dialect)->alterAsVector(next, current, nullptr), "|");
        });
        EXPECT_EQ(statements, row.expected) << row.dialect << ": " << row.next << " from " << row.current;
    }
}

}  // namespace
}  // namespace vellicor::testing
