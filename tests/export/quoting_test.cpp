// tests/export/quoting_test.cpp — how names and default values are written.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/document_builder.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/export/generic_exporter.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor {
namespace {

using testing::document;
using testing::ScopedPreference;

std::string quoted(std::string_view name) { return GenericSQLExporter::exporter()->quoteIdentifier(name); }

TEST(Quoting, TheFirstRuleThatAppliesDecides) {
    EXPECT_EQ(quoted("first name"), "firstname");
    EXPECT_EQ(quoted("tab\tstays"), "tab\tstays");
    {
        ScopedPreference whitespace(prefs::autoQuoteIdentifiersWithWhitespace);
        EXPECT_EQ(quoted("first name"), "'first name'");
        EXPECT_EQ(quoted("tab\there"), "'tab\there'");
        EXPECT_EQ(quoted("name"), "name");
    }
    ScopedPreference always(prefs::quoteIdentifiersOnExport);
    const std::pair<const char*, const char*> cases[] = {
        {"a", "'a'"}, {"'a'", "'a'"}, {"'a", "'a'"}, {"a'", "'a'"}, {"a'b", "'a'b'"}, {"", "'"}};
    for (const auto& [name, expected] : cases) EXPECT_EQ(quoted(name), expected) << name;
}

TEST(Quoting, ReservedWordsAreThoseOfTheExactClass) {
    EXPECT_EQ(quoted("order"), "order");
    ScopedPreference reserved(prefs::quoteReservedWords);
    EXPECT_EQ(quoted("order"), "'order'");
    EXPECT_EQ(quoted(" order "), "' order '") << "trimmed and upper-cased for the look-up only";
    EXPECT_EQ(quoted("END-EXEC"), "'END-EXEC'");
    EXPECT_EQ(quoted("orders"), "orders");
    class Dialect : public GenericSQLExporter {};
    EXPECT_EQ(create<Dialect>()->quoteIdentifier("order"), "order") << "a dialect without words quotes none";
    EXPECT_EQ(GenericSQLExporter::exporter()->reservedWords().size(), 299u);
}

TEST(Quoting, IndexNamesTakeTheTablesPrefixOnce) {
    auto container = document("sales.Orders(a INT)");
    SQLTable& table = *testing::table(*container, "sales.Orders");
    EXPECT_EQ(GenericSQLExporter::exporter()->getNameForIndex(table, "i"), "i");
    ScopedPreference prefix(prefs::addTablePrefixToIndexNamesInExport);
    auto exporter = GenericSQLExporter::exporter();
    EXPECT_EQ(exporter->getNameForIndex(table, "i"), "Orders_i");
    EXPECT_EQ(exporter->getNameForIndex(table, "ORDERS_i"), "ORDERS_i");
    EXPECT_EQ(exporter->getNameForIndex(table, "sales_orders_i"), "sales_orders_i");
    EXPECT_EQ(exporter->getNameForIndex(table, "i", "_x", false), "Orders_i_x");
    EXPECT_EQ(exporter->getNameForIndex(*SQLTable::table(), "i"), "i") << "a table that was never named has no prefix";
}

TEST(Quoting, DefaultValuesAreQuotedAndEscaped) {
    auto container = document("t(a VARCHAR(9); b INT expression=now())");
    SQLField& column = *testing::field(*container, "t", "a");
    auto exporter = GenericSQLExporter::exporter();
    const std::pair<const char*, const char*> cases[] = {
        {"abc", "'abc'"},      {"'abc'", "'abc'"},   {"it's", R"('it\'s')"}, {R"(it\'s)", R"('it\'s')"}, {R"(a\\'b)", R"('a\\\'b')"},
        {"''", "''"},          {"NULL", "NULL"},     {"Null", "Null"},       {"'", "'"},                 {R"(a\')", R"('a\'')"},
        {"'abc", "'abc'"},     {"abc'", "'abc'"},    {"0", "'0'"}};
    for (const auto& [value, expected] : cases) EXPECT_EQ(exporter->quoteDefaultValue(value, column), expected) << value;
    EXPECT_EQ(exporter->quoteDefaultValue("now()", *testing::field(*container, "t", "b")), "now()");

    ScopedPreference runnable(prefs::runnableScripts);
    const std::pair<const char*, const char*> literals[] = {
        {"it's", "'it''s'"}, {"'it''s'", "'it''s'"}, {R"('it\'s')", "'it''s'"}, {"'abc'", "'abc'"}, {"'", "''''"}};
    for (const auto& [value, expected] : literals) EXPECT_EQ(exporter->quoteDefaultValue(value, column), expected) << value;
}

TEST(Quoting, EscapingAndNarrowRules) {
    auto exporter = GenericSQLExporter::exporter();
    EXPECT_EQ(exporter->escapeQuoteCharacter(R"(a'b"c\d)"), R"(a\'b\"c\\d)");
    EXPECT_EQ(exporter->escapeQuoteCharacter("a'b", "b"), R"(a'\b)");
    EXPECT_EQ(exporter->escapeQuoteCharacter("\\"), R"(\\)");
    EXPECT_EQ(exporter->addQuotes("it's"), R"('it\'s')");
    EXPECT_EQ(exporter->quoteForSQL("a' `b"), R"('a\' `b')");
    EXPECT_EQ(exporter->quoteForSQL("a'`b"), "a'`b");
    EXPECT_EQ(exporter->quoteForSQL("a'`b", true), R"('a\'`b')");
    EXPECT_EQ(exporter->quoteForSQL("a b", true), "a b");
}

TEST(Quoting, CanonicalNamesCarryTheSchema) {
    auto container = document("my~schema.my~table(a INT)");
    SQLTable& table = *testing::table(*container, "my schema.my table");
    EXPECT_EQ(GenericSQLExporter::exporter()->getCanonicalName(table), "myschema.mytable");
    ScopedPreference always(prefs::quoteIdentifiersOnExport);
    EXPECT_EQ(GenericSQLExporter::exporter()->getCanonicalName(table), "'my schema'.'my table'");
}

}  // namespace
}  // namespace vellicor
