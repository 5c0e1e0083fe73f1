// tests/model/index_test.cpp — indexes and constraints: their columns, reading, copying, labels.
#include "vellicor/model/index.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/document_builder.h"
#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor {
namespace {

using testing::LogCapture;
using testing::ScopedPreference;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;

/// Writes down what it is told: "<key" before a change, "key>" after it.
struct Announcements : KeyObserver {
    std::string heard;
    void willChangeValue(const void*, std::string_view key) override { heard += "<" + std::string(key); }
    void didChangeValue(const void*, std::string_view key) override { heard += std::string(key) + ">"; }
};

class Index : public ::testing::Test {
protected:
    std::shared_ptr<SQLContainer> document = testing::document("t(a INT; b INT; c INT; index i UNIQUE (a,b(10)))");
    SQLTable& table = *testing::table(*document, "t");
    std::shared_ptr<StandardUndoManager> undo = std::make_shared<StandardUndoManager>();
    SQLIndex& index = *table.indexObjectsInTable().front();

    SQLField& column(const char* name) { return *table.getFieldByName(name); }
    /// An index in the table as a document describes it, before its columns are found.
    std::shared_ptr<SQLIndex> read(const std::vector<std::string>& names, const char* type = "") {
        auto made = SQLIndex::indexWithName(table.getValidName("read"));
        for (const std::string& name : names) made->setFieldName(name);
        made->setIndexType(type);
        table.add(made);
        return made;
    }
};

TEST_F(Index, KeepsItsColumnsInOrderAndUndoesEachChange) {
    document->setUndoManager(undo);
    Announcements announcements;
    index.addObserver(announcements, "fieldList");

    index.insertIndexFieldAtPosition(column("c"), 1);
    EXPECT_THAT(index.getFieldNameListWithPrefixes(true), ElementsAre("a", "c", "b(10)"));
    undo->undo();
    EXPECT_THAT(index.getFieldNameList(), ElementsAre("a", "b"));
    index.insertIndexFieldAtPosition(column("c"), 99);
    EXPECT_THAT(index.getFieldNameList(), ElementsAre("a", "b", "c"));

    index.removeIndexField(column("a"));
    undo->undo();
    EXPECT_THAT(index.getFieldNameList(), ElementsAre("b", "c", "a")) << "undoing appends, wherever the column stood";
    undo->redo();
    EXPECT_THAT(index.getFieldNameList(), ElementsAre("b", "c"));

    index.setIncludesIndexFieldForBoolean(column("b"), true);
    index.setIncludesIndexFieldForBoolean(column("b"), false);
    index.setIncludesIndexFieldForBoolean(column("b"), false);
    index.insertObjectInFieldListAtIndex(column("a"), 0);
    index.removeObjectFromFieldListAtIndex(1);
    index.removeObjectFromFieldListAtIndex(7);
    EXPECT_THAT(index.getFieldNameList(), ElementsAre("a"));

    announcements.heard.clear();
    index.setSizeForIndexEntry(column("a"), "5");
    EXPECT_EQ(announcements.heard, "<fieldListfieldList>");
    announcements.heard.clear();
    index.setSizeForIndexEntry(column("a"), std::nullopt);
    EXPECT_EQ(announcements.heard, "<fieldList") << "taking a size away does not announce its end";
    undo->undo();
    EXPECT_EQ(index.getSizeForIndexEntry(&column("a")), "5");
    EXPECT_EQ(index.getSizeForIndexEntry(&column("b")), "");
    EXPECT_EQ(index.getSizeForIndexEntry(nullptr), "");
    index.removeObserver(announcements, "fieldList");

    index.setIndexType(std::nullopt);
    EXPECT_EQ(index.getIndexType(), "");
    undo->undo();
    EXPECT_EQ(index.getIndexType(), "UNIQUE");

    auto compared = SQLComparisonIndex::indexWithName("x");
    compared->setUndoManager(undo);
    undo->removeAllActions();
    compared->addIndexField(column("a"));
    EXPECT_FALSE(undo->canUndo());
}

TEST_F(Index, DropsColumnsThatLeftTheTable) {
    const auto removed = column("a").shared_from_this();
    table.remove(&column("a"));
    EXPECT_THAT(index.getFieldNameList(), ElementsAre("a", "b")) << "a removed column may come back";
    index.addIndexField(column("c"));
    index.updateIndexFieldList();
    EXPECT_THAT(index.getFieldNameList(), ElementsAre("b", "c"));

    table.remove(&column("b"));
    EXPECT_THAT(index.getFieldNameList(), ElementsAre("c")) << "nobody held it any more";
    EXPECT_EQ(index.indexListCount(), 2u);
    index.removeObjectFromFieldListAtIndex(0);
    EXPECT_THAT(index.fieldList(), IsEmpty()) << "positions count living columns";
}

TEST_F(Index, FindsItsColumnsAfterReading) {
    auto made = read({"b", "ghost", "a", "b"});
    EXPECT_THAT(made->getFieldNameList(), IsEmpty());
    auto entry = [&](const char* name, const OptionalText& uid, const OptionalText& size) {
        auto read = create<SQLIndexEntry>();
        read->setName(name);
        if (uid) read->setFieldUid(uid);
        read->setPrefixSize(size);
        made->addIndexEntry(read);
    };
    entry("renamed", column("b").uid(), "7");
    entry("A", "stale", "8");
    entry("ghost", std::nullopt, std::nullopt);
    made->addIndexEntry(nullptr);
    {
        LogCapture log;
        made->postLoadProcess();
        EXPECT_THAT(log.lines(),
                    ElementsAre("exception (index field 'ghost' not found)\n", "probable file corrupt error",
                                "Field was null on setSizeForIndexEntry",
                                "Index Entry was null for setSizeForIndexEntry"));
    }
    EXPECT_THAT(made->getFieldNameListWithPrefixes(true), ElementsAre("b(7)", "a(8)"));
    LogCapture log;
    made->postLoadProcess();
    EXPECT_THAT(log.lines(), IsEmpty()) << "what was read is used once";

    for (const OptionalText& nothing : {OptionalText(), OptionalText("")}) {
        try {
            made->insertFieldName(nothing, 0);
            FAIL();
        } catch (const SQLException& error) {
            EXPECT_EQ(error.name(), "NilIndexFieldException");
            EXPECT_EQ(error.reason(), "Index name passed to index was empty");
        }
    }
    EXPECT_THAT(log.lines(), ElementsAre("Note: nil field in index", "Note: nil field in index"));
    auto ordered = read({"a", "b"});
    ordered->insertFieldName("c", 0);
    ordered->insertFieldName("ghost", -1);
    ordered->postLoadProcess();
    EXPECT_THAT(ordered->getFieldNameList(), ElementsAre("c", "a", "b"));
    auto sparse = read({"b"});
    sparse->insertFieldName("a", 5);
    sparse->insertFieldName("c", 3);
    sparse->postLoadProcess();
    EXPECT_THAT(sparse->getFieldNameList(), ElementsAre("b", "c", "a")) << "positions past the end leave gaps";
}

TEST_F(Index, OfOneColumnMayBecomeAFlagOfTheColumn) {
    const struct {
        const char* flag;
        const char* type;
        std::vector<std::string> columns;
        bool cleanup, preference;
        const char* becomes;  // of column a; empty: the index stays
        bool flagStays;
    } rows[] = {
        {keys::collapseUnique, "", {"a"}, false, false, keys::unique, false},
        {keys::collapseUnique, "", {"a", "b"}, false, false, "", false},
        {keys::collapseSimpleIndex, "", {"a"}, true, true, keys::indexed, false},
        {keys::collapseSimpleIndex, "FULLTEXT", {"a"}, true, true, "", false},
        {keys::collapseSimpleIndex, "SPATIAL", {"a"}, true, true, "", false},
        {keys::collapseSimpleIndex, "", {"a", "b"}, true, true, "", false},
        {keys::collapseSimpleIndex, "", {"a"}, true, false, "", false},
        {keys::collapseSimpleIndex, "", {"a"}, false, true, "", true},
    };
    for (const auto& row : rows) {
        const ScopedPreference collapse(prefs::collapseSingleEntryIndices, Value::boolean(row.preference));
        document->setPropertyAsBoolean(keys::isVisibleCleanupPostImport, row.cleanup);
        auto made = read(row.columns, row.type);
        made->setPropertyAsBoolean(row.flag, true);
        made->postLoadProcess();
        const bool collapses = *row.becomes;
        EXPECT_EQ(table.contains(*made), !collapses) << row.flag << row.type;
        EXPECT_EQ(made->hasProperty(row.flag), row.flagStays) << row.flag << row.type;
        for (const char* key : {keys::unique, keys::indexed}) {
            EXPECT_EQ(column("a").getPropertyAsBoolean(key), key == std::string_view(row.becomes)) << row.flag;
            column("a").removeProperty(key);
        }
        if (collapses) {
            const char* nameKey = row.becomes == keys::unique ? keys::uniqueIndexName : keys::indexedKeyName;
            EXPECT_EQ(column("a").getProperty(nameKey), made->getName());
        }
        made->delete_();
    }
}

TEST_F(Index, IsWrittenAndCopiedWithItsColumns) {
    index.setProperty(keys::uid, "I");
    column("a").setProperty(keys::uid, "A");
    column("b").setProperty(keys::uid, "B");
    EXPECT_EQ(index.exportToXML(), R"(<SQLIndex>
    <name><![CDATA[i]]></name>
    <fieldName><![CDATA[a]]></fieldName>
    <fieldName><![CDATA[b]]></fieldName>
    <SQLIndexEntry>
        <name><![CDATA[a]]></name>
        <prefixSize><![CDATA[]]></prefixSize>
        <fieldUid><![CDATA[A]]></fieldUid>
    </SQLIndexEntry>
    <SQLIndexEntry>
        <name><![CDATA[b]]></name>
        <prefixSize><![CDATA[10]]></prefixSize>
        <fieldUid><![CDATA[B]]></fieldUid>
    </SQLIndexEntry>
    <indexType><![CDATA[UNIQUE]]></indexType>
    <uid><![CDATA[I]]></uid>
</SQLIndex>
)");
    const Value json(index.jsonDictionary());
    EXPECT_EQ(*json.find("fieldList"), Value(Value::List{"a", "b"}));
    const Value::Map entry{{"ClassType", "SQLIndexEntry"}, {"name", "b"}, {"prefixSize", "10"}, {"fieldUid", "B"}};
    EXPECT_EQ(json.find("indexEntryList")->asList()->at(1), Value(entry));

    for (const bool freshUids : {false, true}) {
        auto copy = copyOf(table);
        if (freshUids) copy->createNewUid();
        copy->postLoadProcess();
        SQLIndex& copied = *copy->indexObjectsInTable().front();
        EXPECT_THAT(copied.fieldList(), ElementsAre(copy->getFieldByName("a"), copy->getFieldByName("b")));
        EXPECT_THAT(copied.getFieldNameListWithPrefixes(true), ElementsAre("a", "b(10)"));
    }

    index.addIndexField(column("b"));
    const Value twice(index.jsonDictionary());
    EXPECT_EQ(*twice.find("indexEntryList")->asList()->at(2).find("prefixSize"), Value("10")) << "that of the column";
    EXPECT_THAT(index.exportToXML(), EndsWith("<prefixSize><![CDATA[10]]></prefixSize>\n"
                                              "        <fieldUid><![CDATA[B]]></fieldUid>\n    </SQLIndexEntry>\n"
                                              "    <indexType><![CDATA[UNIQUE]]></indexType>\n"
                                              "    <uid><![CDATA[I]]></uid>\n</SQLIndex>\n"));
}

TEST_F(Index, HasALabel) {
    EXPECT_EQ(index.labelForDisplay(true), "Index UNIQUE ");
    EXPECT_EQ(index.exportToSQL(), "Index UNIQUE i (a,b)");
    EXPECT_EQ(SQLIndex::index()->getLabel(), "Index idx (empty)");

    auto constraint = SQLConstraint::constraint();
    EXPECT_EQ(constraint->getLabel(), "UNIQUE (empty)");
    constraint->addIndexField(column("a"));
    constraint->addIndexField(column("b"));
    constraint->setConstraintType(" UNIQUE ");
    EXPECT_EQ(constraint->getLabel(), "UNIQUE (a,b)");
    constraint->setCheckConstraintExpression("a > 0\nAND\r\nb > 0");
    EXPECT_EQ(constraint->labelForDisplay(true), "CHECK (a > 0 AND b > 0)");
}

TEST_F(Index, ConstraintHoldsAnExpressionOrColumns) {
    const std::pair<const char*, const char*> rows[] = {
        {"CHECK (a > 0)", "a > 0"},        {"CHECK\t (f(a) > 0) NOT NULL", "f(a) > 0"}, {"a > 0", ""},
        {"CHECK(a > 0)", ""},              {"check (a > 0)", ""},                       {"CHECK (a\n> 0)", ""},
        {"x CHECK (a) y CHECK (b)", "a) y CHECK (b"},
    };
    for (const auto& [sql, expression] : rows)
        EXPECT_EQ(SQLConstraint::extractCheckConstraintExpression(sql), expression);

    auto constraint = SQLConstraint::initWithName("k");
    Announcements announcements;
    constraint->addObserver(announcements, "isCheckConstraint");
    constraint->setProperty(keys::checkConstraint, "x");
    EXPECT_EQ(announcements.heard, "");
    constraint->setCheckConstraintExpressionFromSQL("CHECK (a > 0)");
    EXPECT_EQ(announcements.heard, "<isCheckConstraintisCheckConstraint>");
    EXPECT_TRUE(constraint->isCheckConstraint());
    EXPECT_EQ(constraint->checkConstraintExpression(), "a > 0");
    constraint->removeObserver(announcements, "isCheckConstraint");

    auto unique = [&](const char* name, std::vector<const char*> columns) {
        auto made = SQLConstraint::initWithName(name);
        for (const char* each : columns) made->addIndexField(column(each));
        return made;
    };
    const auto first = unique("u", {"a", "b"});
    EXPECT_TRUE(first->isEqualToConstraint(first.get()));
    EXPECT_TRUE(first->isEqualToConstraint(unique("v", {"a", "b"}).get()));
    EXPECT_FALSE(first->isEqualToConstraint(unique("u", {"a", "b"}).get())) << "equal names make them different";
    EXPECT_FALSE(first->isEqualToConstraint(unique("v", {"b", "a"}).get()));
    EXPECT_FALSE(first->isEqualToConstraint(nullptr));
    const auto placed = unique("w", {"a", "b"});
    table.add(placed);
    EXPECT_FALSE(first->isEqualToConstraint(placed.get()));
}

}  // namespace
}  // namespace vellicor
