// tests/dialects/preferences_test.cpp — what each preference changes in the text of the dialects, alone and together.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tests/support/dialect_text.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/dialects/sql_server_exporter.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor::testing {
namespace {

// === what is asked of an exporter

using Exporter = GenericSQLExporter;
using Operation = std::string (*)(Exporter&, SQLContainer&);

/// The first table, which a row may give any name.
SQLTable& first(SQLContainer& document) { return *as<SQLTable>(document.objectList().front().get()); }
SQLField& firstColumn(SQLTable& table) { return *as<SQLField>(table.getField(0)); }

std::string script(Exporter& exporter, SQLContainer& document) { return exporter.export_(document); }
std::string names(Exporter& exporter, SQLContainer& document) {
    std::vector<std::string> columns;
    for (const auto& column : first(document).getFields()) columns.push_back(exporter.getCanonicalName(*column));
    return exporter.getCanonicalName(first(document)) + "(" + joined(columns, ",") + ")";
}
std::string column(Exporter& exporter, SQLContainer& document) {
    return exporter.export_(firstColumn(first(document)));
}
std::string index(Exporter& exporter, SQLContainer& document) {
    return exporter.addIndex(*first(document).indexObjectsInTable().front());
}
std::string columnIndex(Exporter& exporter, SQLContainer& document) {
    return exporter.createFieldIndexOnField(firstColumn(first(document)), first(document));
}
std::string statements(Exporter& exporter, SQLContainer& document) { return exporter.postLoad(document); }
std::string drop(Exporter& exporter, SQLContainer& document) { return exporter.dropTableInstruction(first(document)); }
std::string dropKey(Exporter& exporter, SQLContainer& document) {
    return dynamic_cast<SQLServerExporter&>(exporter).dropPrimaryKeyInstruction(first(document), "");
}
/// The first column of the table `t` takes the place of the first one of the table `old`.
std::string alter(Exporter& exporter, SQLContainer& document) {
    SQLField& old = firstColumn(*table(document, "old"));
    Statements all = exporter.alterAsVector(firstColumn(*table(document, "t")), old, nullptr);
    std::erase(all, "");
    return joined(all, "|");
}

// === the rows

constexpr const char* kAlways = prefs::quoteIdentifiersOnExport;
constexpr const char* kBlanks = prefs::autoQuoteIdentifiersWithWhitespace;
constexpr const char* kCharacters = prefs::autoQuoteIdentifiersWithInvalidCharacters;
constexpr const char* kWords = prefs::quoteReservedWords;
constexpr const char* kCapitals = prefs::postgresQuoteSolelyUppercaseIdentifiers;
constexpr const char* kPrefix = prefs::addTablePrefixToIndexNamesInExport;
constexpr const char* kExists = prefs::useIfNotExistsOnTableExport;
constexpr const char* kTitle = prefs::includeTitleHeaderInExport;
constexpr const char* kByName = prefs::exportObjectSortOrder;
constexpr const char* kIgnore = prefs::canIgnoreObjectsOnExport;
constexpr const char* kAlterForm = prefs::useAlterTableForMySQLIndexCreation;
constexpr const char* kLimit = prefs::limitSQLCommentLength;
constexpr const char* kKeepSize = prefs::preventTypeSizeUpdateWhenNil;
constexpr const char* kUpper = prefs::postgresTypesUppercase;
constexpr const char* kComments = prefs::usePostgresComments;
constexpr const char* kNullable = prefs::sqlServerAddNullable;
constexpr const char* kFindName = prefs::sqlServerFindPKNameForDrop;
constexpr const char* kGo = prefs::sybaseUseGo;

/// Names that need quotes for one reason each; "user" is a word of some dialects only.
const std::string kNames = "my~s.my~t(b~c int; order int; user int; aB int; XY int; d-e int; 12 int)";
const std::string kLong(1100, 'x');
const std::string kKeyed = "u(x int pk);;t(order int; key k (order) -> u(x) delete=1 update=1)";
const std::string kPair = "b(x INT pk);;a(x INT -> b.x)";
const std::string kIgnored = "ignored(x INT pk);;a(x INT -> ignored.x)";

struct Row {
    const char* dialect;
    std::vector<const char*> preferences;
    std::string design;
    Operation operation;
    std::string expected;
};

const Row rows[] = {
    // The four switches of quoting, for the quotes, words and characters of each dialect
    {"generic", {}, kNames, names, "mys.myt(bc,order,user,aB,XY,d-e,12)"},
    {"generic", {kAlways}, kNames, names, "'my s'.'my t'('b c','order','user','aB','XY','d-e','12')"},
    {"generic", {kAlways, kBlanks, kWords}, kNames, names, "'my s'.'my t'('b c','order','user','aB','XY','d-e','12')"},
    {"generic", {kBlanks}, kNames, names, "'my s'.'my t'('b c',order,user,aB,XY,d-e,12)"},
    {"generic", {kCharacters, kCapitals}, kNames, names, "mys.myt(bc,order,user,aB,XY,d-e,12)"},
    {"generic", {kWords}, kNames, names, "mys.myt(bc,'order','user',aB,XY,d-e,12)"},
    {"OpenBase", {kAlways, kCharacters, kWords}, kNames, names, "mys.myt(bc,order,user,aB,XY,d-e,12)"},
    {"OpenBase", {kAlways, kBlanks}, kNames, names, "'my s'.'my t'('b c',order,user,aB,XY,d-e,12)"},
    {"SQLite", {kAlways}, kNames, names, R"("my s"."my t"("b c","order","user","aB","XY","d-e","12"))"},
    {"SQLite", {kBlanks, kCharacters, kWords}, kNames, names, R"("my s"."my t"("b c","order",user,aB,XY,d-e,12))"},
    {"sybase", {kAlways}, kNames, names, "'my s'.'my t'('b c','order','user','aB','XY','d-e','12')"},
    {"sybase", {kBlanks, kWords}, kNames, names, "'my s'.'my t'('b c','order','user',aB,XY,d-e,12)"},
    {"postgres", {kAlways}, kNames, names, R"("my s"."my t"("b c","order","user","aB","XY","d-e","12"))"},
    {"postgres", {kBlanks, kWords}, kNames, names, R"("my s"."my t"("b c","order","user",aB,XY,d-e,12))"},
    {"postgres", {kCharacters}, kNames, names, R"("my s"."my t"("b c",order,user,"aB",XY,"d-e","12"))"},
    {"postgres", {kCharacters, kCapitals}, kNames, names, R"("my s"."my t"("b c",order,user,"aB","XY","d-e","12"))"},
    {"postgres", {kCapitals, kWords}, kNames, names, R"(mys.myt(bc,"order","user",aB,XY,d-e,12))"},
    {"postgres", {kCharacters}, "été(日本 int; _9 int; 9a int; abc_1$ int)", names, "été(\"日本\",_9,\"9a\",abc_1$)"},
    {"Redshift", {kCharacters, kCapitals, kWords}, kNames, names,
     R"("my s"."my t"("b c","order","user","aB","XY","d-e","12"))"},
    {"FileMaker", {}, kNames, names, R"("my s"."my t"("b c","order","user","aB","XY","d-e","12"))"},
    {"SQLServer", {kAlways}, kNames, names, "[my s].[my t]([b c],[order],[user],[aB],[XY],[d-e],[12])"},
    {"SQLServer", {kBlanks, kWords}, kNames, names, "[my s].[my t]([b c],[order],[user],aB,XY,d-e,12)"},
    {"mysql", {kAlways}, kNames, names, "`my s`.`my t`(`b c`,`order`,`user`,`aB`,`XY`,`d-e`,`12`)"},
    {"mysql", {kCharacters}, kNames, names, "`my s`.`my t`(`b c`,order,user,aB,XY,`d-e`,`12`)"},
    {"mysql", {kWords}, kNames, names, "mys.myt(bc,`order`,user,aB,XY,d-e,12)"},
    {"mysql", {kBlanks, kCharacters, kWords}, kNames, names, "`my s`.`my t`(`b c`,`order`,user,aB,XY,`d-e`,`12`)"},
    {"mysql", {kCharacters}, "größe(a😀 int; $_9 int; a1 int)", names, "größe(`a😀`,$_9,a1)"},
    {"Oracle", {kAlways}, kNames, names, R"("my s"."my t"("b c","order","user","aB","XY","d-e","12"))"},
    {"Oracle", {kBlanks, kWords}, kNames, names, R"("my s"."my t"("b c","order","user",aB,XY,d-e,12))"},

    // … and every place where a script writes a name
    {"generic", {kBlanks}, "my~t(b~c INT pk; index my~i (b~c))", script,
     "\n\nCREATE TABLE 'my t'\n(\n'b c' INT,\nINDEX 'my i' ('b c'),\n"
     "CONSTRAINT 'my t_pkey' PRIMARY KEY ('b c')\n);\n\n"},
    {"SQLite", {kWords}, "u(x INTEGER pk);;t(order INTEGER -> u.x)", script,
     "\n\nCREATE TABLE u\n(\nx INTEGER PRIMARY KEY\n);\n"
     "\nCREATE TABLE t\n(\n\"order\" INTEGER REFERENCES u (x)\n);\n\n"},
    {"postgres", {kWords}, kKeyed, statements,
     "ALTER TABLE t ADD CONSTRAINT k FOREIGN KEY (\"order\") REFERENCES u (x) ON DELETE CASCADE  ON UPDATE CASCADE;\n"},
    {"mysql", {kAlways}, kKeyed, statements,
     "ALTER TABLE `t` ADD CONSTRAINT `k` FOREIGN KEY k (`order`) REFERENCES `u` (`x`)"
     " ON DELETE CASCADE  ON UPDATE CASCADE;\n"},
    {"Oracle", {kAlways}, kKeyed, statements,
     R"(ALTER TABLE "t" ADD CONSTRAINT "k" FOREIGN KEY ("order") REFERENCES "u" ("x") ON DELETE CASCADE;)" "\n"},
    {"Oracle", {kWords}, "t(order number);;old(order int)", alter, "ALTER TABLE t MODIFY \"order\" number"},
    {"SQLServer", {kAlways}, "t(a bigint);;old(a int)", alter, "ALTER TABLE [t] ALTER COLUMN [a] bigint NULL"},
    {"postgres", {kAlways}, "t(a int)", drop, "DROP TABLE IF EXISTS \"t\" CASCADE;\n"},
    {"mysql", {kWords}, "order(a int)", drop, "\nDROP TABLE IF EXISTS `order`;\n"},

    // In SQL Server and Sybase only a blank or a reserved word brackets a column; a default is bracketed like a name
    {"SQLServer", {kAlways}, "t(a int; b~c int default=x~y)", script,
     "\n\nCREATE TABLE [t]\n(\na INT,\n[b c] INT DEFAULT [x y]\n);\n\n"},
    {"SQLServer", {kWords}, "t(b~c int default=x~y)", column, "bc INT DEFAULT xy"},
    {"SQLServer", {kAlways, kWords}, "t(order int default=order)", column, "[order] INT DEFAULT order"},
    {"SQLServer", {kAlways}, "my~s.my~t(b~c int unique)", script,
     "\n\nCREATE TABLE [my s].[my t]\n(\n[b c] INT,\nCONSTRAINT [mys_myt_bc_unique] UNIQUE ([b c])\n);\n\n"},
    {"sybase", {kBlanks}, "t(b~c int default=x~y)", column, "'b c' INT DEFAULT 'x y'"},
    {"sybase", {kWords}, "t(order int default=order)", column, "'order' INT DEFAULT order"},

    // AddTablePrefixToIndexNamesInExport
    {"generic", {kPrefix}, "t(a int; index i (a))", index, "ALTER TABLE t ADD INDEX i (a);\n"},
    {"generic", {kPrefix, kAlways}, "t(a int indexed)", columnIndex, "CREATE INDEX 't_a_idx' ON 't'('a');\n"},
    {"SQLite", {kPrefix, kBlanks}, "my~t(a int; index i (a))", index, "CREATE  INDEX \"my t_i\" ON \"my t\" (a);\n"},
    {"sybase", {kPrefix, kWords}, "order(a int; index i (a))", index, "CREATE  INDEX order_i ON 'order' (a);\n"},
    {"postgres", {kPrefix}, "t(a int; index T_i (a))", index, "CREATE  INDEX T_i ON t (a);\n"},
    {"postgres", {kPrefix, kCharacters}, "aB(a int; index i (a))", index, "CREATE  INDEX \"aB_i\" ON \"aB\" (a);\n"},
    {"postgres", {kPrefix}, "t(a int; index i UNIQUE (a))", index, "ALTER TABLE t ADD CONSTRAINT i UNIQUE (a);\n"},
    {"FileMaker", {kPrefix}, "t(a int indexed)", columnIndex, "CREATE INDEX ON \"t\"(\"a\");\n"},
    {"SQLServer", {kPrefix, kAlways}, "t(a int; index i (a))", index, "CREATE  INDEX [t_i] ON [t] ([a]);\n"},
    {"mysql", {kPrefix}, "s.t(a int; index s_t_i (a))", index, "CREATE INDEX s_t_i ON s.t (a);\n"},
    {"mysql", {kPrefix}, "t(a int indexed)", columnIndex, "CREATE INDEX t_a_idx ON t (a);"},
    {"mysql", {kPrefix, kAlways}, "t(a int indexed)", columnIndex, "CREATE INDEX `t_t_a_idx` ON `t` (`a`);"},
    {"Oracle", {kPrefix}, "t(a int; index i (a))", index, "CREATE  INDEX t_i ON t (a);\n"},
    {"Oracle", {kPrefix}, "t(a int; index i UNIQUE (a))", index, "ALTER TABLE t ADD CONSTRAINT i UNIQUE (a);\n"},

    // useIfNotExistsOnTableExport
    {"SQLite", {kExists, kAlways}, "t(a int; index i (a))", script,
     "\n\nCREATE TABLE IF NOT EXISTS \"t\"\n(\n\"a\" INT\n);\n\nCREATE  INDEX IF NOT EXISTS \"i\" ON \"t\" (\"a\");\n"},
    {"SQLite", {kExists}, "t(a int indexed)", columnIndex, "CREATE INDEX t_a_idx ON t(a);\n"},
    {"mysql", {kExists, kWords}, "order(a int; index i (a))", script,
     "\n\nCREATE TABLE IF NOT EXISTS `order`\n(\na int\n);\n\nCREATE INDEX i ON `order` (a);\n"},
    {"postgres", {kExists}, "t(a int; index i (a))", script,
     "\n\nCREATE TABLE t\n(\na int\n);\n\nCREATE  INDEX i ON t (a);\n"},

    // IncludeTitleHeaderInExport, exportObjectSortOrder, canIgnoreObjectsOnExport
    {"Redshift", {kTitle, kAlways}, "", script, "/* Vellicor (Redshift)*/\n\n\n"},
    {"generic", {kByName, kAlways}, kPair, script,
     "\n\nCREATE TABLE 'a'\n(\n'x' INT\n);\n"
     "\nCREATE TABLE 'b'\n(\n'x' INT,\nCONSTRAINT 'b_pkey' PRIMARY KEY ('x')\n);\n"
     "\nALTER TABLE 'a' ADD FOREIGN KEY ('x') REFERENCES 'b' ('x');\n"},
    {"SQLite", {kByName}, kPair, script,
     "\n\nCREATE TABLE a\n(\nx INT REFERENCES b (x)\n);\n\nCREATE TABLE b\n(\nx INT PRIMARY KEY\n);\n\n"},
    {"mysql", {kIgnore, kAlways}, kIgnored, script,
     "\n\n/* Export disabled for `ignored` */\n\nCREATE TABLE `a`\n(\n`x` INT\n);\n\n"},
    {"FileMaker", {kIgnore, kByName}, kIgnored, script,
     "\n\nCREATE TABLE \"a\"\n(\n\"x\" INT\n);\n\n/* Export disabled for \"ignored\" */\n\n"},

    // useAlterTableForMySQLIndexCreation, limitSQLCommentLength, preventTypeSizeUpdateWhenNil
    {"mysql", {kAlterForm, kWords}, "t(order varchar(9); index i UNIQUE (order(3)))", index,
     "ALTER TABLE t ADD UNIQUE INDEX i (`order`(3));\n"},
    {"mysql", {kAlterForm, kPrefix, kBlanks}, "my~t(a int; index i (a))", index,
     "ALTER TABLE `my t` ADD INDEX `my t_i` (a);\n"},
    {"mysql", {kAlways}, "t(a int indexed)", columnIndex, "CREATE INDEX `a_idx` ON `t` (`a`);"},
    {"mysql", {kWords}, "t(order int indexed)", columnIndex, "CREATE INDEX order_idx ON t (`order`);"},
    {"mysql", {kAlterForm}, "t(a int indexed)", columnIndex, "ALTER TABLE t ADD INDEX a_idx (a);"},
    {"mysql", {kAlterForm, kCharacters}, "t(a int; index e ())", index, "/*ALTER TABLE t ADD INDEX e;\n*/\n"},
    {"SQLServer", {kAlterForm}, "t(a int; index i (a))", index, "CREATE  INDEX i ON t (a);\n"},
    {"mysql", {kLimit, kAlways}, "t(a int comment=" + kLong + ")", column, "`a` int COMMENT '" + kLong + "'"},
    {"mysql", {kAlways}, "t(a int);;old(a int(11))", alter, "ALTER TABLE `t` CHANGE `a` `a` int"},
    {"mysql", {kAlways}, "t(a int);;old(a int unique)", alter,
     "ALTER TABLE `t` CHANGE `a` `a` int|ALTER TABLE old DROP INDEX a"},
    {"mysql", {kKeepSize, kAlways}, "t(a int);;old(a int(11))", alter, ""},
    {"mysql", {kKeepSize}, "t(a int(5));;old(a int(11))", alter, "ALTER TABLE t CHANGE a a int(5)"},
    {"mysql", {kKeepSize, kWords}, "t(order int notnull);;old(order int(11))", alter,
     "ALTER TABLE t CHANGE `order` `order` int NOT NULL"},

    // postgresTypesUppercase, usePostgresComments
    {"postgres", {kUpper, kAlways}, "t(a varchar(20))", column, "\"a\" VARCHAR(20)"},
    {"postgres", {kUpper}, "t(a int(11) notnull)", column, "a INT NOT NULL"},
    {"postgres", {kUpper}, "t(a bigint);;old(a int)", alter, "ALTER TABLE t ALTER COLUMN a TYPE bigint"},
    {"Redshift", {kUpper, kCharacters}, "t(aB bigint auto)", column, "\"aB\" BIGSERIAL"},
    {"postgres", {}, "t(a int comment=it's)", statements, ""},
    {"postgres", {kComments, kAlways}, "s.t(a int comment=it's)", statements,
     R"(COMMENT ON COLUMN "s"."t"."a" is 'it\'s')" "\n" R"(COMMENT ON COLUMN "s"."t"."a" is 'it\'s')"},
    {"Redshift", {kComments, kWords}, "t(a int comment=x)", script,
     "\n\nCREATE TABLE t\n(\n/*x*/\na int\n);\n\nCOMMENT ON COLUMN t.a is 'x'\nCOMMENT ON COLUMN t.a is 'x'"},
    {"postgres", {kComments, kCharacters}, "t(aB int comment=x);;old(aB int)", alter,
     "COMMENT ON COLUMN t.\"aB\" is 'x'"},
    {"generic", {kComments, kUpper}, "t(a int comment=x)", statements, ""},

    // SQLServerAddNullable, SQLServerFindPKNameForDrop, sybaseUseGo
    {"SQLServer", {kNullable}, "t(a int default=5)", column, "a INT NULL DEFAULT 5"},
    {"SQLServer", {kNullable}, "t(a int pk)", column, "a INT NOT NULL"},
    {"SQLServer", {kNullable, kWords}, "t(order int check=a>0)", column, "[order] INT NULL CHECK (a>0)"},
    {"SQLServer", {kNullable, kBlanks}, "t(b~c int auto)", column, "[b c] INT NULL IDENTITY"},
    {"sybase", {kNullable}, "t(a int)", column, "a INT"},
    {"SQLServer", {kAlways}, "t(a int pk)", dropKey,
     "/*[WARNING] Drop primary key contraint instruction requires that constraint name is set"
     " for primary key being dropped*/\n/* ALTER TABLE [t] DROP CONSTRAINT [] (primary key)*/"},
    {"SQLServer", {kFindName, kBlanks}, "my~s.t(a int pk)", dropKey,
     "/* (need to discover primary key name first) */\nDECLARE @SQL VARCHAR(4000);\n"
     "SET @SQL = 'ALTER TABLE [my s].t DROP CONSTRAINT |ConstraintName| ;'\n"
     "SET @SQL = REPLACE(@SQL, '|ConstraintName|', ( SELECT   name FROM     sysobjects WHERE    xtype = 'PK'"
     " AND parent_obj = OBJECT_ID('[my s].t') ));\nEXEC (@SQL)"},
    {"sybase", {kGo}, "t(a int pk; index i (a))", script,
     "\n\nCREATE TABLE t\n(\na INT,\nCONSTRAINT t_pkey PRIMARY KEY (a)\n)\ngo\n"
     "\nCREATE UNIQUE INDEX PrimaryIndex on t (a)\n\nCREATE  INDEX i ON t (a)\ngo\n\n"},
    {"sybase", {kGo, kAlways}, "t(a int pk; index i (a))", script,
     "\n\nCREATE TABLE 't'\n(\na INT,\nCONSTRAINT 't_pkey' PRIMARY KEY ('a')\n)\ngo\n"
     "\nCREATE UNIQUE INDEX PrimaryIndex on 't' (a)\n\nCREATE  INDEX 'i' ON 't' ('a')\ngo\n\n"},
    {"sybase", {kGo}, "t(a int)", drop, "DROP TABLE t\ngo\n\n"},
    {"SQLServer", {kGo}, "t(a int)", drop, "DROP TABLE t;\n"},
};

TEST(Preferences, ChangeTheTextAsTold) {
    for (const Row& row : rows) {
        std::vector<std::unique_ptr<ScopedPreference>> preferences;
        std::string set;
        for (const char* key : row.preferences) {
            preferences.push_back(std::make_unique<ScopedPreference>(key, Value::integer(1)));
            set += std::string(" ") + key;
        }
        const auto design = document(row.design);
        SQLTable* ignored = table(*design, "ignored");
        if (ignored) ignored->setPropertyAsBoolean(keys::ignoreWhenExporting, true);
        EXPECT_EQ(row.operation(*exporterOf(row.dialect), *design), row.expected)
            << row.dialect << set << ": " << row.design;
    }
}

}  // namespace
}  // namespace vellicor::testing
