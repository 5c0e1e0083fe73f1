// tests/export/create_script_test.cpp — create scripts of the generic dialect, byte for byte.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/document_builder.h"
#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/export/generic_exporter.h"
#include "vellicor/model/comment.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor {
namespace {

using testing::document;
using testing::LogCapture;
using testing::ScopedPreference;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

std::string script(SQLContainer& container) { return GenericSQLExporter::exporter()->export_(container); }
std::string script(std::string_view description) { return script(*document(description)); }

/// What stands between the parentheses of the only table's CREATE TABLE.
std::string block(std::string_view description) {
    const std::string sql = script(description);
    const std::size_t open = sql.find("(\n") + 2;
    return sql.substr(open, sql.find("\n);") - open);
}

TEST(CreateScript, ColumnsStandOnLinesOfTheirOwnAndTheKeyLast) {
    auto container = document("t(a INT pk notnull; b VARCHAR(20))");
    testing::table(*container, "t")->setPrimaryKeyConstraintName("pk");
    EXPECT_EQ(script(*container),
              "\n"
              "\nCREATE TABLE t\n(\na INT NOT NULL,\nb VARCHAR(20),\nCONSTRAINT pk PRIMARY KEY (a)\n);\n"
              "\n");
}

TEST(CreateScript, ColumnsWriteTheirOptionsInOrder) {
    EXPECT_EQ(block("t(a INT pk auto unique notnull default=0 check=a>0; b INT)"),
              "a INT DEFAULT '0' NOT NULL AUTO_INCREMENT  UNIQUE  CHECK (a>0),\nb INT,\nCONSTRAINT t_pkey PRIMARY KEY (a)");
    EXPECT_EQ(block("t(a INT; b INT unique)"), "a INT,\nb INT UNIQUE");
    EXPECT_EQ(block("t(my~name INT)"), "myname INT");
    EXPECT_EQ(block("t(a varchar(5) default=NULL)"), "a VARCHAR(5) DEFAULT NULL");
    EXPECT_EQ(block("t(a varchar(5) default='')"), "a VARCHAR(5) DEFAULT ''");
    EXPECT_EQ(block("t(a INT expression=now())"), "a INT DEFAULT now()");
}

TEST(CreateScript, ATableWithoutComponentsKeepsItsParentheses) {
    EXPECT_EQ(script("t()"), "\n\nCREATE TABLE t\n(\n\n);\n\n");
}

TEST(CreateScript, InlineIndexesAndConstraintsFollowTheColumns) {
    EXPECT_EQ(block("t(a INT; b INT; index i (a,b); constraint c CHECK [a > b]; constraint u UNIQUE (b))"),
              "a INT,\nb INT,\nINDEX i (a,b),\nCONSTRAINT c CHECK (a > b),\nINDEX u (b)");
    EXPECT_EQ(block("t(a INT; index i ())"), "a INT\n/* INDEX i (empty) */") << "an empty index takes no separator";
}

TEST(CreateScript, CommentsStandInFrontOfWhatTheyDescribe) {
    auto container = document("t(a INT comment=first~one; b INT)");
    testing::table(*container, "t")->setComment("the table");
    EXPECT_EQ(script(*container), "\n\n/*the table*/\nCREATE TABLE t\n(\n/*first one*/\na INT,\nb INT\n);\n\n");
}

TEST(CreateScript, TitleUserBlocksAndDropsSurroundTheTables) {
    ScopedPreference title(prefs::includeTitleHeaderInExport);
    auto container = document("a(id INT pk);;b(a_id INT -> a.id)");
    container->documentInfo()->setDropTableOption(true);
    container->documentInfo()->setPrologueExportSQL(" SET x 'a;b'; SET y ");
    container->documentInfo()->setPostExportSQL("DONE;");
    EXPECT_EQ(script(*container),
              "/* Vellicor (Generic SQL)*/\n"
              "SET x 'a;b';\n SET y\n"
              "DROP TABLE b;\nDROP TABLE a;\n"
              "\nCREATE TABLE a\n(\nid INT,\nCONSTRAINT a_pkey PRIMARY KEY (id)\n);\n"
              "\nCREATE TABLE b\n(\na_id INT\n);\n"
              "\n"
              "ALTER TABLE b ADD FOREIGN KEY (a_id) REFERENCES a (id);\n\n"
              "DONE;");
}

TEST(CreateScript, ForeignKeysWriteTheirActionsWithTwoBlanksBetween) {
    EXPECT_THAT(script("t2(x INT pk);;t(a INT; key fk (a) -> t2(x) delete=4 update=4)"),
                HasSubstr("\nALTER TABLE t ADD CONSTRAINT fk FOREIGN KEY (a) REFERENCES t2 (x) ON DELETE NO ACTION  ON UPDATE NO ACTION;\n"));
    EXPECT_THAT(script("t2(x INT pk; y INT pk);;t(a INT; b INT; key fk (a,b) -> t2(x,y))"),
                HasSubstr("FOREIGN KEY (a,b) REFERENCES t2 (x,y);\n"));
}

TEST(CreateScript, KeysThatCannotBeExportedSayWhy) {
    auto container = document("t(a INT)");
    auto key = SQLForeignKey::initWithName("k");
    testing::table(*container, "t")->add(key);
    EXPECT_THAT(script(*container), HasSubstr("/*Foreign Key t k not exportable, No Columns Set, No Target Table*/"));

    container = document("u(x INT pk; y INT);;t(a INT; key k (a) -> u(x))");
    auto& bad = *as<SQLForeignKey>(testing::table(*container, "t")->getFieldByTypeAndName(isKindOf<SQLForeignKey>, "k"));
    bad.addFieldPair(nullptr, testing::field(*container, "u", "y"));
    EXPECT_THAT(script(*container), HasSubstr("/*Foreign Key t k not exportable, Mismatched Columns*/"));
}

TEST(CreateScript, IndexedColumnsGetAnIndexNamedAfterTableAndColumn) {
    EXPECT_THAT(script("sales.t(my~col INT indexed)"), HasSubstr("\nCREATE INDEX t_my_col_idx ON sales.t(mycol);\n"));
    EXPECT_THAT(script("t(t_a INT indexed)"), HasSubstr("CREATE INDEX t_a_idx ON t(t_a);"));
}

TEST(CreateScript, IgnoredObjectsLeaveANote) {
    auto container = document("a(id INT pk);;b(a_id INT -> a.id)");
    testing::table(*container, "a")->setPropertyAsBoolean(keys::ignoreWhenExporting, true);
    EXPECT_THAT(script(*container), Not(HasSubstr("disabled")));
    ScopedPreference honour(prefs::canIgnoreObjectsOnExport);
    EXPECT_EQ(script(*container), "\n\n/* Export disabled for a */\n\nCREATE TABLE b\n(\na_id INT\n);\n\n")
        << "and nothing links to them";
    testing::table(*container, "a")->setPropertyAsBoolean(keys::cannotLinkToObject, false);
    EXPECT_THAT(script(*container), HasSubstr("REFERENCES a (id)")) << "unless the object says otherwise";
}

TEST(CreateScript, ObjectsStandInDocumentOrderOrByName) {
    constexpr auto order = [](const std::string& sql) { return sql.find("TABLE b") < sql.find("TABLE a"); };
    EXPECT_FALSE(order(script("b(x INT);;a(x INT)"))) << "unrelated tables stand by name";
    EXPECT_TRUE(order(script("b(x INT pk);;a(x INT -> b.x)"))) << "a table stands after those it references";
    ScopedPreference byName(prefs::exportObjectSortOrder, Value::integer(1));
    EXPECT_FALSE(order(script("b(x INT pk);;a(x INT -> b.x)")));
}

TEST(CreateScript, DuplicateIndexNamesBecomeRemarks) {
    auto container = document("t(a INT; index i (a))");
    class Exporter : public GenericSQLExporter {
        bool supportsIndexPostLoad() const override { return true; }
    };
    auto exporter = create<Exporter>();
    SQLTable& table = *testing::table(*container, "t");
    SQLIndex& index = *table.indexObjectsInTable().front();
    EXPECT_THAT(exporter->postLoadAsVector(index, table), ElementsAre("ALTER TABLE t ADD INDEX i (a);\n"));
    EXPECT_THAT(exporter->postLoadAsVector(index, table), ElementsAre("/* (prefix indexes:ON) => Index i would conflict */"));
    exporter->clearIndexCache();
    EXPECT_THAT(exporter->postLoadAsVector(index, table), ElementsAre("ALTER TABLE t ADD INDEX i (a);\n"));
}

TEST(CreateScript, ObjectsWithoutAnOperationAreLogged) {
    auto container = document("");
    container->add(SQLComment::initWithComment("note"));
    LogCapture log;
    EXPECT_EQ(script(*container), "\n\n");
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("No method available: exportSQLComment: export ")));
}

TEST(CreateScript, ALiveDatabaseIsAnnouncedAndNeverGetsIfNotExists) {
    struct MetaData : DatabaseMetaData {
        std::string databaseProductName() override { return "Engine"; }
        std::string databaseProductVersion() override {
            if (fails) throw std::runtime_error("gone");
            return "9";
        }
        bool fails = false;
    };
    auto exporter = GenericSQLExporter::exporter();
    auto metaData = std::make_shared<MetaData>();
    LogCapture log;
    exporter->setJDBCMetaData(metaData);
    EXPECT_TRUE(exporter->isJDBCExporter());
    metaData->fails = true;
    exporter->setJDBCMetaData(metaData);
    exporter->setJDBCMetaData(nullptr);
    EXPECT_FALSE(exporter->isJDBCExporter());
    EXPECT_THAT(log.lines(), ElementsAre("Exporting to Engine 9", "failed to get database productName or product version\n gone"));
}

TEST(CreateScript, RunnableTextKeepsRemarksOutOfTheListAndCommentsClosed) {
    ScopedPreference runnable(prefs::runnableScripts);
    EXPECT_EQ(script("t(a INT pk comment=end*/DROP; index i ())"),
              "\n\nCREATE TABLE t\n(\n/* INDEX i (empty) */\n/*end* /DROP*/\na INT,\nCONSTRAINT t_pkey PRIMARY KEY (a)\n);\n\n");
}

}  // namespace
}  // namespace vellicor
