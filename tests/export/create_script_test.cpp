// tests/export/create_script_test.cpp — names, values, tables and views in the text of the generic dialect.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/support/dialect_text.h"
#include "tests/support/document_builder.h"
#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/export/generic_exporter.h"
#include "vellicor/export/runnable/runnable_dialect.h"
#include "vellicor/model/comment.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor {
namespace {

using testing::document;
using testing::LogCapture;
using testing::ScopedPreference;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::string script(SQLContainer& container) { return GenericSQLExporter::exporter()->export_(container); }
std::string script(std::string_view description) { return script(*document(description)); }

/// What stands between the parentheses of the only table's CREATE TABLE.
std::string block(std::string_view description) {
    const std::string sql = script(description);
    const std::size_t open = sql.find("(\n") + 2;
    return sql.substr(open, sql.find("\n);") - open);
}

TEST(Quoting, EveryExporterHasItsOwnWords) {
    static std::string_view words[1];  // one place for the lists of both
    struct MadeUp : GenericSQLExporter {
        std::span<const std::string_view> reservedWords() const override { return words; }
    };
    const ScopedPreference quotes(prefs::quoteReservedWords);
    for (const char* word : {"FIRST", "SECOND"}) {
        const std::string own = word;  // gone before the next one asks
        words[0] = own;
        const auto exporter = create<MadeUp>();
        for (const char* name : {"first", "second", "third"})
            EXPECT_EQ(exporter->quoteReservedWord(name), uppercased(name) == own) << name << " for " << own;
    }
}

TEST(CreateScript, TablesHoldColumnsThenIndexesThenTheKey) {
    const std::pair<const char*, const char*> cases[] = {
        {"t(a INT pk auto unique notnull default=0 check=a>0; b INT)",
         "a INT DEFAULT '0' NOT NULL AUTO_INCREMENT  UNIQUE  CHECK (a>0),\nb INT,\nCONSTRAINT t_pkey PRIMARY KEY (a)"},
        {"t(a INT; b INT; index i (a,b); constraint c CHECK [a > b]; constraint u UNIQUE (b))",
         "a INT,\nb INT,\nINDEX i (a,b),\nCONSTRAINT c CHECK (a > b),\nINDEX u (b)"},
        {"t(a INT; index i ())", "a INT\n/* INDEX i (empty) */"},  // an empty index takes no separator
    };
    for (const auto& [description, expected] : cases) EXPECT_EQ(block(description), expected);
}

TEST(CreateScript, TheUsersBlocksSurroundTheTables) {
    auto container = document("a(id INT);;b(id INT)");
    container->documentInfo()->setDropTableOption(true);
    container->documentInfo()->setPrologueExportSQL(" SET x 'a;b'; SET y ");
    container->documentInfo()->setPostExportSQL("DONE;");
    EXPECT_EQ(script(*container),
              "SET x 'a;b';\n SET y\nDROP TABLE a;\nDROP TABLE b;\n"
              "\nCREATE TABLE a\n(\nid INT\n);\n\nCREATE TABLE b\n(\nid INT\n);\n\nDONE;");
}

TEST(CreateScript, KeysThatCannotBeExportedSayWhy) {
    auto container = document("u(x INT pk; y INT);;t(a INT; key k (a) -> u(x))");
    SQLForeignKey* key = testing::table(*container, "t")->foreignKeyObjectsInTable().front();
    key->addFieldPair(nullptr, testing::field(*container, "u", "y"));
    EXPECT_THAT(script(*container), HasSubstr("/*Foreign Key t k not exportable, Mismatched Columns*/"));
}

TEST(CreateScript, IndexedColumnsGetAnIndexNamedAfterTableAndColumn) {
    EXPECT_THAT(script("s.t(my~col INT indexed)"), HasSubstr("\nCREATE INDEX t_my_col_idx ON s.t(mycol);\n"));
    EXPECT_THAT(script("t(t_a INT indexed)"), HasSubstr("CREATE INDEX t_a_idx ON t(t_a);"));
}

TEST(CreateScript, NothingLinksToIgnoredObjectsUnlessTheySaySo) {
    ScopedPreference honour(prefs::canIgnoreObjectsOnExport);
    auto container = document("a(id INT pk);;b(a_id INT -> a.id)");
    SQLTable& a = *testing::table(*container, "a");
    a.setPropertyAsBoolean(keys::ignoreWhenExporting, true);
    EXPECT_EQ(script(*container), "\n\n/* Export disabled for a */\n\nCREATE TABLE b\n(\na_id INT\n);\n\n");
    a.setPropertyAsBoolean(keys::cannotLinkToObject, false);
    EXPECT_THAT(script(*container), HasSubstr("REFERENCES a (id)"));
}

TEST(CreateScript, AnyOtherOrderThanThatOfNamesIsTheDocuments) {
    ScopedPreference order(prefs::exportObjectSortOrder, Value::integer(2));
    EXPECT_THAT(script("b(x INT pk);;a(x INT -> b.x)"), ::testing::ContainsRegex("TABLE b(.|\n)*TABLE a"));
}

TEST(CreateScript, DuplicateIndexNamesBecomeRemarks) {
    auto container = document("t(a INT; index i (a))");
    class Exporter : public GenericSQLExporter {
        bool supportsIndexPostLoad() const override { return true; }
    };
    auto exporter = create<Exporter>();
    SQLTable& table = *testing::table(*container, "t");
    const auto statement = [&] { return exporter->postLoadAsVector(*table.indexObjectsInTable().front(), table); };
    EXPECT_THAT(statement(), ElementsAre("ALTER TABLE t ADD INDEX i (a);\n"));
    EXPECT_THAT(statement(), ElementsAre("/* (prefix indexes:ON) => Index i would conflict */"));
    exporter->clearIndexCache();
    EXPECT_THAT(statement(), ElementsAre("ALTER TABLE t ADD INDEX i (a);\n"));
}

TEST(CreateScript, ObjectsWithoutAnOperationAreLogged) {
    auto container = document("");
    container->add(SQLComment::initWithComment("note"));
    LogCapture log;
    EXPECT_EQ(script(*container), "\n\n");
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("No method available: exportSQLComment: export ")));
}

TEST(CreateScript, ALiveDatabaseIsAnnounced) {
    struct MetaData : DatabaseMetaData {
        std::string databaseProductName() override { return "Engine"; }
        std::string databaseProductVersion() override { return fails ? throw std::runtime_error("gone") : "9"; }
        bool fails = false;
    };
    auto exporter = GenericSQLExporter::exporter();
    auto metaData = std::make_shared<MetaData>();
    LogCapture log;
    for (const bool fails : {false, true}) {
        metaData->fails = fails;
        exporter->setJDBCMetaData(metaData);
        EXPECT_TRUE(exporter->isJDBCExporter());
    }
    exporter->setJDBCMetaData(nullptr);
    EXPECT_FALSE(exporter->isJDBCExporter());
    EXPECT_THAT(log.lines(), ElementsAre("Exporting to Engine 9",
                                         "failed to get database productName or product version\n gone"));
}

TEST(CreateScript, RunnableTextKeepsRemarksOutOfTheListAndCommentsClosed) {
    ScopedPreference runnable(prefs::runnableScripts);
    EXPECT_EQ(testing::scriptOf("generic", "t(a INT pk comment=end*/DROP; index i ())"),
              "\n\nCREATE TABLE t\n(\n/* INDEX i (empty) */\n/*end* /DROP*/\na INT,\n"
              "CONSTRAINT t_pkey PRIMARY KEY (a)\n);\n\n");
}

TEST(CreateScript, RunnableScriptsSayWhatTheyDoNotCarry) {
    ScopedPreference runnable(prefs::runnableScripts);
    auto container = document("s.t(a INT)");
    testing::table(*container, "s.t")->add(SQLForeignKey::initWithName("k"));
    container->add(SQLTable::tableWithName("bare"));
    const auto exporter = testing::exporterOf("generic");
    const auto* form = dynamic_cast<const RunnableDialect*>(exporter.get());
    ASSERT_NE(form, nullptr);
    EXPECT_TRUE(form->losses().empty());
    (void)exporter->export_(*container);
    std::vector<std::string> lost;
    for (const ScriptLoss& loss : form->losses().list()) lost.push_back(loss.object + ": " + loss.what);
    EXPECT_THAT(lost, ::testing::UnorderedElementsAre("table bare: the table", "foreign key s.t.k: the foreign key"));
    (void)exporter->export_(*document("t(a INT)"));
    EXPECT_TRUE(form->losses().empty()) << "of the last script only";
}

TEST(CreateScript, AnExceptionLeavesNothingOfTheDocumentBehind) {
    struct Failing : GenericSQLExporter {
        std::string exportSQLTable(SQLTable&) override {
            EXPECT_NE(exportContainer(), nullptr);
            throw std::runtime_error("gone");
        }
    };
    const auto exporter = create<Failing>();
    EXPECT_THROW((void)exporter->export_(*document("t(a INT)")), std::runtime_error);
    EXPECT_EQ(exporter->exportContainer(), nullptr);
}

// === names and values

std::string quoted(std::string_view name) { return GenericSQLExporter::exporter()->quoteIdentifier(name); }

TEST(Quoting, NamesThatHoldOrLackQuotes) {
    EXPECT_EQ(quoted("tab\tstays"), "tab\tstays");
    {
        ScopedPreference whitespace(prefs::autoQuoteIdentifiersWithWhitespace);
        EXPECT_EQ(quoted("tab\there"), "'tab\there'");
    }
    ScopedPreference always(prefs::quoteIdentifiersOnExport);
    const std::pair<const char*, const char*> cases[] = {
        {"a", "'a'"}, {"'a'", "'a'"}, {"'a", "'a'"}, {"a'", "'a'"}, {"a'b", "'a'b'"}, {"", "'"}};
    for (const auto& [name, expected] : cases) EXPECT_EQ(quoted(name), expected) << name;
}

TEST(Quoting, ReservedWordsAreThoseOfTheExactClass) {
    ScopedPreference reserved(prefs::quoteReservedWords);
    EXPECT_EQ(quoted(" order "), "' order '") << "trimmed and upper-cased for the look-up only";
    EXPECT_EQ(quoted("END-EXEC"), "'END-EXEC'");
    class Dialect : public GenericSQLExporter {};
    EXPECT_EQ(create<Dialect>()->quoteIdentifier("order"), "order") << "a dialect without words quotes none";
}

TEST(Quoting, IndexNamesTakeTheTablesPrefixOnce) {
    auto container = document("sales.Orders(a INT)");
    SQLTable& table = *testing::table(*container, "sales.Orders");
    ScopedPreference prefix(prefs::addTablePrefixToIndexNamesInExport);
    auto exporter = GenericSQLExporter::exporter();
    for (const char* name : {"ORDERS_i", "sales_orders_i"}) EXPECT_EQ(exporter->getNameForIndex(table, name), name);
    EXPECT_EQ(exporter->getNameForIndex(table, "i", "_x", false), "Orders_i_x");
    EXPECT_EQ(exporter->getNameForIndex(*SQLTable::table(), "i"), "i") << "a table that was never named has no prefix";
}

TEST(Quoting, DefaultValuesAreQuotedAndEscaped) {
    auto container = document("t(a VARCHAR(9); b INT expression=now())");
    SQLField& column = *testing::field(*container, "t", "a");
    auto exporter = GenericSQLExporter::exporter();
    const auto literal = [&](const char* value) { return exporter->quoteDefaultValue(value, column); };
    const std::pair<const char*, const char*> cases[] = {
        {"abc", "'abc'"}, {"'abc'", "'abc'"}, {"it's", R"('it\'s')"}, {R"(it\'s)", R"('it\'s')"}, {"''", "''"},
        {"Null", "Null"}, {"'abc", "'abc'"},  {"abc'", "'abc'"},      {R"(a\\'b)", R"('a\\\'b')"},  {"'", "'"},
        {"0", "'0'"},     {R"(a\')", R"('a\'')"}};
    for (const auto& [value, expected] : cases) EXPECT_EQ(literal(value), expected) << value;
    EXPECT_EQ(exporter->quoteDefaultValue("now()", *testing::field(*container, "t", "b")), "now()");

    ScopedPreference runnable(prefs::runnableScripts);
    exporter = testing::exporterOf("generic");
    const std::pair<const char*, const char*> literals[] = {
        {"it's", "'it''s'"}, {"'it''s'", "'it''s'"}, {R"('it\'s')", "'it''s'"}, {"'abc'", "'abc'"}, {"'", "''''"}};
    for (const auto& [value, expected] : literals) EXPECT_EQ(literal(value), expected) << value;
}

TEST(Quoting, EscapingAndNarrowRules) {
    auto exporter = GenericSQLExporter::exporter();
    EXPECT_EQ(exporter->escapeQuoteCharacter(R"(a'b"c\d)"), R"(a\'b\"c\\d)");
    EXPECT_EQ(exporter->escapeQuoteCharacter("èé", "é"), R"(è\é)") << "by characters, not bytes";
    EXPECT_EQ(exporter->escapeQuoteCharacter("\\"), R"(\\)");
    EXPECT_EQ(exporter->addQuotes("it's"), R"('it\'s')");
    EXPECT_EQ(exporter->quoteForSQL("a' `b"), R"('a\' `b')");
    EXPECT_EQ(exporter->quoteForSQL("a'`b"), "a'`b");
    EXPECT_EQ(exporter->quoteForSQL("a'`b", true), R"('a\'`b')");
    EXPECT_EQ(exporter->quoteForSQL("a b", true), "a b");
}

// === views

/// A dialect; what it can do with views is set by each test.
class Dialect : public GenericSQLExporter {
public:
    bool views = true, replaces = false, needsOwner = false;
    std::string instructionSeparator() override { return "\ngo\n"; }
    bool supportsViews() const override { return views; }
    bool canUpdateViewWithStandardCommand() const override { return replaces; }
    bool requiresOwnershipForAlter() const override { return needsOwner; }
    std::string changeOwnerToCurrent(SQLObject& object) override { return "OWN " + getCanonicalName(object); }
};
class PlainDialect : public GenericSQLExporter {};

std::shared_ptr<SQLView> view(const char* name, const OptionalText& query) {
    auto made = SQLView::viewWithName(name);
    if (query) made->setQueryString(query);
    return made;
}

TEST(ViewExport, CreateTextFollowsTheQuery) {
    const struct {
        OptionalText query;
        const char* expected;
    } cases[] = {
        {" \nSELECT 1;\n", "CREATE VIEW s.v  AS SELECT 1;"},
        {"SELECT 1;;", "CREATE VIEW s.v  AS SELECT 1;;"},
        {"SELECT '%@' ;", "CREATE VIEW s.v  AS SELECT '%@' ;"},
        {" \n\t", "/* VIEW s.v - no query specified */"},
        {std::nullopt, "/* VIEW s.v - no query specified */"},
    };
    for (const auto& [query, expected] : cases)
        EXPECT_EQ(GenericSQLExporter::exporter()->export_(*view("s.v", query)), expected);
    EXPECT_EQ(create<Dialect>()->export_(*view("v", "SELECT 1;")), "CREATE VIEW v  AS SELECT 1\ngo\n");
    EXPECT_EQ(create<PlainDialect>()->export_(*view("v", "SELECT 1")), "") << "support is never inherited";
    EXPECT_THAT(GenericSQLExporter::exporter()->postLoadAsVector(*view("v", "SELECT 1")), IsEmpty());
}

TEST(ViewExport, ChangedViewIsDroppedAndCreated) {
    auto now = view("v", "SELECT 2"), old = view("w", "SELECT 1");
    auto generic = GenericSQLExporter::exporter();
    LogCapture captured;
    EXPECT_THAT(generic->alterAsVector(*now, *now, nullptr), IsEmpty());
    EXPECT_THAT(generic->alterAsVector(*view("v", "SELECT 2;"), *now, nullptr), IsEmpty()) << "the texts are equal";
    EXPECT_THAT(generic->alterAsVector(*now, *old, nullptr),
                ElementsAre("DROP VIEW w;\n", "CREATE VIEW v  AS SELECT 2;"));
    EXPECT_THAT(captured.lines(), ElementsAre("altering SQLView", "altering SQLView", "altering SQLView"));

    auto dialect = create<Dialect>();
    dialect->needsOwner = true;
    const std::string created = "CREATE VIEW v  AS SELECT 2\ngo\n";
    EXPECT_THAT(dialect->alterAsVector(*now, *old, nullptr), ElementsAre("OWN w", "DROP VIEW w\ngo\n\n", created));
    dialect->replaces = true;
    EXPECT_THAT(dialect->alterAsVector(*now, *old, nullptr), ElementsAre("OWN w", created));
    dialect->views = false;
    EXPECT_THAT(dialect->alterAsVector(*now, *old, nullptr), IsEmpty());
}

}  // namespace
}  // namespace vellicor
