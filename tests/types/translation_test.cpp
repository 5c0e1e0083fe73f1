// tests/types/translation_test.cpp — types, defaults and conditions in the words of other dialects.
#include <gtest/gtest.h>

#include "vellicor/types/type_translation.h"
#include "vellicor/types/value_translation.h"

namespace vellicor::testing {
namespace {

constexpr TypeGrade kExact = TypeGrade::Exact, kWidening = TypeGrade::Widening, kLossy = TypeGrade::Lossy,
                    kUnknown = TypeGrade::Unknown;

struct TypeCase {
    const char* from;
    const char* to;
    const char* type;
    const char* text;
    TypeGrade grade;
    const char* reason;
};
const TypeCase types[] = {
    // spellings: sizes that only show, attributes, words behind the brackets, arrays
    {"mysql", "postgres", "int(11) unsigned zerofill", "BIGINT", kWidening, "takes more"},
    {"mysql", "postgres", "varchar(20) character set latin1 collate latin1_bin", "VARCHAR(20)", kExact, ""},
    {"POSTGRES", "Oracle", "timestamp (3)  with time zone", "TIMESTAMP(3) WITH LOCAL TIME ZONE", kLossy,
     "holds years -4712 to 9999"},
    {"postgres", "mysql", "integer[]", "LONGTEXT", kWidening, "keeps the array as its text"},
    {"SQLServer", "mysql", "nvarchar(max)", "LONGTEXT", kExact, ""},
    {"Oracle", "postgres", "INTERVAL DAY(2) TO SECOND(6)", "INTERVAL", kWidening, "takes more"},
    {"mysql", "postgres", "enum('a,b','it''s (x)')", "VARCHAR(8)", kWidening, "takes any text, not only the values"},
    // the limits of each engine
    {"postgres", "mysql", "character varying(70000)", "MEDIUMTEXT", kWidening, "VARCHAR stops at 65,535 bytes"},
    {"postgres", "Oracle", "varchar(1000)", "VARCHAR2(1000 CHAR)", kExact, ""},
    {"postgres", "Oracle", "varchar(1001)", "CLOB", kWidening, "VARCHAR2 stops at 4,000 bytes"},
    {"mysql", "SQLServer", "varchar(4001)", "NVARCHAR(MAX)", kWidening, "NVARCHAR stops at 4,000 characters"},
    {"mysql", "Redshift", "varchar(20)", "VARCHAR(80)", kWidening, "takes more"},
    {"mysql", "Redshift", "longtext", "VARCHAR(65535)", kLossy, "stops at 65,535 bytes"},
    {"postgres", "SQLServer", "numeric(40,2)", "DECIMAL(38,2)", kLossy,
     "holds 36 digits before and 2 behind the point, not 38 and 2"},
    {"postgres", "SQLite", "numeric(16,2)", "DECIMAL(16,2)", kLossy, "keeps 15 digits"},
    {"mysql", "SQLServer", "tinyint", "SMALLINT", kWidening, "takes more"},
    {"mysql", "SQLServer", "tinyint unsigned", "TINYINT", kExact, ""},
    {"mysql", "SQLite", "bigint unsigned", "INTEGER", kLossy,
     "holds -9223372036854775808 to 9223372036854775807, not 0 to 18446744073709551615"},
    {"SQLServer", "postgres", "datetime2(7)", "TIMESTAMP", kLossy, "keeps 6 digits of a second, not 7"},
    {"SQLServer", "postgres", "datetimeoffset(6)", "TIMESTAMP WITH TIME ZONE", kLossy,
     "keeps the moment, not its zone"},
    {"SQLServer", "postgres", "money", "NUMERIC(19,4)", kWidening, "exact number in place of money"},
    // what a dialect does not name: SQLite's rule, the names of others in generic, nothing at all
    {"SQLite", "postgres", "FLOATING POINT", "BIGINT", kExact, ""},
    {"generic", "postgres", "mediumtext", "TEXT", kWidening, "takes more"},
    {"generic", "mysql", "mediumtext", "mediumtext", kExact, ""},
    {"postgres", "mysql", "mood", "mood", kUnknown, "postgres has no type mood that is known here"},
    {"Plug-in", "mysql", "uuid", "uuid", kExact, ""},
    {"mysql", "mysql", "int(11)", "int(11)", kExact, ""},
};

TEST(Translation, OfTypes) {
    for (const TypeCase& row : types) {
        const TypeTranslation made = translateType(row.from, row.to, row.type);
        EXPECT_EQ(made.text, row.text) << row.from << " " << row.type << " to " << row.to;
        EXPECT_EQ(made.grade, row.grade) << row.type << " to " << row.to;
        EXPECT_EQ(made.reason, row.reason) << row.type << " to " << row.to;
    }
    EXPECT_TRUE(translateType("postgres", "mysql", "bigserial").counts);
    EXPECT_EQ(translateType("mysql", "postgres", "bigint unsigned", {.counts = true}).text, "BIGINT");
    EXPECT_EQ(translateType("mysql", "Oracle", "int", {.counts = true}).text, "NUMBER(10)");
    EXPECT_EQ(translateType("mysql", "SQLite", "enum('a','it''s')").labels,
              (std::vector<std::string>{"'a'", "'it''s'"}));
}

struct DefaultCase {
    const char* from;
    const char* to;
    const char* type;
    const char* newType;
    const char* value;
    bool isExpression;
    const char* text;  // empty: left out
    bool staysExpression;
};
const DefaultCase defaults[] = {
    // the clock in the words of the other, as the new column keeps it
    {"postgres", "mysql", "timestamp", "DATETIME(6)", "now()", false, "CURRENT_TIMESTAMP(6)", true},
    {"mysql", "postgres", "datetime(3)", "TIMESTAMP(3)", "CURRENT_TIMESTAMP(3)", false, "CURRENT_TIMESTAMP", true},
    {"SQLite", "SQLServer", "DATETIME", "DATETIME2(6)", "(datetime('now'))", true, "SYSDATETIME()", true},
    {"Oracle", "postgres", "DATE", "TIMESTAMP(0)", "sysdate", false, "CURRENT_TIMESTAMP", true},
    {"postgres", "Oracle", "date", "DATE", "current_date", false, "TRUNC(CURRENT_DATE)", true},
    {"SQLServer", "mysql", "date", "DATE", "(getdate())", true, "(CURRENT_DATE)", true},
    {"postgres", "Oracle", "time", "VARCHAR2(40)", "current_time", false, "", false},
    {"postgres", "SQLServer", "uuid", "UNIQUEIDENTIFIER", "gen_random_uuid()", true, "NEWID()", true},
    {"SQLServer", "Redshift", "uniqueidentifier", "VARCHAR(36)", "newid()", true, "", false},
    // truth
    {"postgres", "mysql", "boolean", "BOOLEAN", "true", true, "1", true},
    {"mysql", "postgres", "bool", "BOOLEAN", "0", false, "FALSE", true},
    {"SQLServer", "postgres", "bit", "BOOLEAN", "((1))", true, "TRUE", true},
    {"mysql", "postgres", "tinyint(1)", "SMALLINT", "TRUE", true, "1", true},
    // casts go, values stay, a text is a text whatever it says
    {"postgres", "mysql", "varchar(9)", "VARCHAR(9)", "'it''s'::character varying(9)", true, "'it''s'", false},
    {"postgres", "SQLite", "text[]", "TEXT", "'{}'::text[]", true, "'{}'", false},
    {"postgres", "mysql", "text", "LONGTEXT", "now()", false, "now()", false},
    {"postgres", "mysql", "varchar(9)", "VARCHAR(9)", "user", false, "user", false},
    {"mysql", "postgres", "date", "DATE", "2024-02-29", false, "2024-02-29", false},
    {"SQLServer", "postgres", "int", "INTEGER", "((-1))", true, "-1", true},
    {"SQLServer", "postgres", "nvarchar(9)", "VARCHAR(9)", "(N'x')", true, "'x'", false},
    {"mysql", "postgres", "bit(4)", "BIT(4)", "b'0101'", true, "B'0101'", true},
    {"postgres", "SQLServer", "bytea", "VARBINARY(MAX)", "'\\x00ff'::bytea", true, "0x00ff", true},
    {"mysql", "SQLite", "int", "INTEGER", "null", false, "NULL", true},
    {"postgres", "SQLite", "integer", "INTEGER", "(1 + 1)", true, "(1 + 1)", true},
    {"postgres", "mysql", "integer", "INT", "my_number()", true, "", true},
};

TEST(Translation, OfDefaults) {
    for (const DefaultCase& row : defaults) {
        const bool isFine = std::string_view(row.newType) == "DATETIME(6)";
        const ValueTranslation made =
            translateDefault(row.from, row.to, row.type, row.newType, row.value,
                             {.isExpression = row.isExpression, .fraction = isFine ? 6U : 0U});
        EXPECT_EQ(made.text, row.text) << row.value << " to " << row.to;
        EXPECT_EQ(made.isExpression, row.staysExpression) << row.value << " to " << row.to;
        EXPECT_EQ(made.grade == kLossy, made.text.empty()) << row.value << " " << made.reason;
    }
    EXPECT_TRUE(translateDefault("postgres", "mysql", "int", "INT", "nextval('s'::regclass)", {.isExpression = true}).counts);
}

struct CheckCase {
    const char* from;
    const char* to;
    const char* condition;
    const char* text;  // empty: left out
};
const CheckCase checks[] = {
    {"mysql", "postgres", "`a b` > 0 and `c` <> 'it\\'s'", R"("a b" > 0 and "c" <> 'it''s')"},
    {"postgres", "mysql", R"("a""b" > 0 AND c <> 'back\slash')", R"(`a"b` > 0 AND c <> 'back\\slash')"},
    {"SQLServer", "Oracle", "([price]>=(0) AND len([Name])>(2))", R"((price>=(0) AND LENGTH("Name")>(2)))"},
    {"postgres", "SQLite", "((status)::text = ANY ((ARRAY['a'::character varying, 'b]'::character varying])::text[]))",
     "((status) IN ('a', 'b]'))"},
    {"postgres", "mysql", "a <> ALL (ARRAY[1, 2])", "a NOT IN (1, 2)"},
    {"postgres", "mysql", "name !~~ 'a%'::text", "name NOT LIKE 'a%'"},
    {"SQLite", "postgres", "length(name) == 3 /* three */", "length(name) = 3"},
    {"postgres", "Oracle", "flag = true", "flag = 1"},
    {"postgres", "mysql", "name ~ '^a'", ""},
    {"mysql", "postgres", "length(name) > 3", ""},
    {"mysql", "postgres", "a || b", ""},
    {"mysql", "SQLite", "a regexp 'x'", ""},
    {"mysql", "postgres", "a / 2 > 1", ""},
    {"mysql", "mysql", "a regexp 'x'", "a regexp 'x'"},
};

TEST(Translation, OfConditions) {
    for (const CheckCase& row : checks) {
        const ValueTranslation made = translateCheck(row.from, row.to, row.condition);
        EXPECT_EQ(made.text, row.text) << row.condition << " to " << row.to << " " << made.reason;
        EXPECT_EQ(made.grade, made.text.empty() ? kLossy : kExact);
    }
}

}  // namespace
}  // namespace vellicor::testing
