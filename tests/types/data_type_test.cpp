// tests/types/data_type_test.cpp — type texts, equivalent types, types renamed across a document.
#include "vellicor/types/data_type.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/document_builder.h"
#include "vellicor/types/type_matching.h"
#include "vellicor/dialects/type_replacer.h"
#include "vellicor/model/export_dialect.h"

namespace vellicor {
namespace {

using ::testing::ElementsAre;

TEST(SQLDataType, SplitsTypeTexts) {
    struct Case {
        const char* type;
        const char* base;
        const char* size;
        std::optional<std::vector<std::string>> elements = std::nullopt;
    };
    const Case cases[] = {
        {"", "", ""},
        {"varchar(255)", "varchar", "255"},
        {"decimal (10,2) unsigned", "decimal ", "10,2"},
        {"f(a(b)c)d", "f", "a(b)c"},
        {"f(a(b(c))", "f", "a(b(c)"},  // the last parenthesis of the text is never part of the size
        {"f((a)(b)", "f", "(a)(b"},
        {"enum('a','b\\'c')", "enum", "'a','b\\'c'", {{"a", "b\\'c"}}},
        {"ENUM('ä)',x,'open", "ENUM", "'ä)',x,'open", {{"ä)", "open"}}},
        {"enum(('a'),'b')", "enum", "('a'", {{"a"}}},  // a quote inside parentheses leaves them
        {"enum", "enum", "", std::vector<std::string>{}},
        {"enum ('a')", "enum ", "'a'"},  // a blank is part of the base
    };
    for (const Case& c : cases) {
        const SQLDataType::Parts parts = SQLDataType().parseTypeStringB(c.type);
        EXPECT_EQ(parts.dataType, c.base) << c.type;
        EXPECT_EQ(parts.dataTypeSize, c.size) << c.type;
        EXPECT_EQ(parts.enumElements, c.elements) << c.type;
    }
}

struct SizingDialect : SQLExportDialect {
    OptionalText requiredSizeForType(std::string_view type) override {
        return type == "VARCHAR" ? OptionalText("99") : std::nullopt;
    }
};

TEST(SQLDataType, TheSizeInTheTextWins) {
    SizingDialect dialect;
    EXPECT_EQ(SQLDataType::dataTypeWithString("VARCHAR(20)", "30", &dialect).typeString(), "VARCHAR(20)");
    const SQLDataType bare = SQLDataType::dataTypeWithString("VARCHAR", "30", &dialect);
    EXPECT_EQ(bare.typeString(), "VARCHAR()") << "an empty one too, over the argument and the dialect";
    EXPECT_FALSE(bare.hasTypeSize());
    EXPECT_EQ(SQLDataType::dataTypeWithString("a(1)", "no such dialect").typeSize(), "1");
}

TEST(SQLDataType, WithoutAParsedSizeArgumentAndDialectDecide) {
    struct BaseOnly : SQLDataType {
        Parts parseTypeStringB(std::string_view type) const override { return {std::string(type), std::nullopt, {}}; }
    };
    SizingDialect dialect;
    BaseOnly type;
    type.setFromType("VARCHAR", "30", &dialect);
    EXPECT_EQ(type.typeString(), "VARCHAR(30)");
    type.setFromType("VARCHAR", &dialect);
    EXPECT_EQ(type.typeString(), "VARCHAR(99)");
    type.setFromType("TEXT", &dialect);
    EXPECT_EQ(type.typeString(), "TEXT()");
    type.setFromType("VARCHAR", "mysql");
    EXPECT_EQ(type.typeString(), "VARCHAR(255)");
}

TEST(TypeMatchingManager, KnowsSerialTypesInBothDirections) {
    const TypeMatchingManager& shared = TypeMatchingManager::sharedTypeMatchingManager();
    EXPECT_TRUE(shared.isTypeEquivalent("INT", "Serial"));
    EXPECT_TRUE(shared.isTypeEquivalent("bigserial", "BIGINT"));
    EXPECT_FALSE(shared.isTypeEquivalent("int", "bigserial"));
    EXPECT_FALSE(shared.isTypeEquivalent("int", "int"));
    EXPECT_FALSE(shared.isTypeEquivalent("int", "integer")) << "pairs do not chain";
    EXPECT_FALSE(shared.isTypeEquivalent(std::nullopt, "int"));

    TypeMatchingManager own;
    own.addMatch("A", "b");
    own.addMatch("B", "a");
    own.addMatch("x", "X");
    EXPECT_THAT(own.getVectorForType("a"), ElementsAre("b"));
    EXPECT_THAT(own.getVectorForType("b"), ElementsAre("a"));
    EXPECT_TRUE(own.isTypeEquivalent("X", "x"));
}

TEST(SQLTypeReplacer, RenamesTheExactTypeEverywhere) {
    auto container = testing::document("t(a int; b INT);;u(a int(11); b text)");
    const auto types = [&container] {
        std::vector<std::string> result;
        for (const char* table : {"t", "u"})
            for (const char* name : {"a", "b"}) result.push_back(testing::field(*container, table, name)->getType());
        return result;
    };
    SQLTypeReplacer::replaceType("int", "integer", *container);
    EXPECT_THAT(types(), ElementsAre("integer", "INT", "int(11)", "text"));
    SQLTypeReplacer::replaceContainerTypes(*container, {{"int(11)", "text"}, {"text", "CLOB(9)"}});
    EXPECT_THAT(types(), ElementsAre("integer", "INT", "text", "CLOB(9)"));
}

}  // namespace
}  // namespace vellicor
