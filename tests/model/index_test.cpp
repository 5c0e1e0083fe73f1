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
    index.insertIndexFieldAtPosition(column("c"), 1);
    EXPECT_THAT(index.getFieldNameListWithPrefixes(true), ElementsAre("a", "c", "b(10)"));
    undo->undo();
    EXPECT_THAT(index.getFieldNameList(), ElementsAre("a", "b"));
    index.insertIndexFieldAtPosition(column("c"), 99);
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

    Announcements announcements;
    index.addObserver(announcements, "fieldList");
    index.setSizeForIndexEntry(column("a"), "5");
    EXPECT_EQ(std::exchange(announcements.heard, ""), "<fieldListfieldList>");
    index.setSizeForIndexEntry(column("a"), std::nullopt);
    EXPECT_EQ(announcements.heard, "<fieldList") << "taking a size away does not announce its end";
    undo->undo();
    EXPECT_EQ(index.getSizeForIndexEntry(&column("a")), "5");
    index.removeObserver(announcements, "fieldList");

    index.setIndexType(std::nullopt);
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
    LogCapture log;
    made->postLoadProcess();
    made->postLoadProcess();  // what was read is used once
    EXPECT_THAT(made->getFieldNameListWithPrefixes(true), ElementsAre("b(7)", "a(8)"));
    EXPECT_THROW(made->insertFieldName(std::nullopt, 0), SQLException);
    EXPECT_THROW(made->insertFieldName("", 0), SQLException);
    EXPECT_THAT(log.lines(),
                ElementsAre("exception (index field 'ghost' not found)\n", "probable file corrupt error",
                            "Field was null on setSizeForIndexEntry", "Index Entry was null for setSizeForIndexEntry",
                            "Note: nil field in index", "Note: nil field in index"));
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
        const char *flag, *type;
        std::vector<std::string> columns;
        bool cleanup, preference;
        const char* becomes;  // of column a; empty: the index stays
    } rows[] = {
        {keys::collapseUnique, "", {"a"}, false, false, keys::unique},
        {keys::collapseUnique, "", {"a", "b"}, false, false, ""},
        {keys::collapseSimpleIndex, "", {"a"}, true, true, keys::indexed},
        {keys::collapseSimpleIndex, "FULLTEXT", {"a"}, true, true, ""},
        {keys::collapseSimpleIndex, "SPATIAL", {"a"}, true, true, ""},
        {keys::collapseSimpleIndex, "", {"a", "b"}, true, true, ""},
        {keys::collapseSimpleIndex, "", {"a"}, true, false, ""},
        {keys::collapseSimpleIndex, "", {"a"}, false, true, ""},  // the flag waits for the clean-up
    };
    for (const auto& row : rows) {
        const ScopedPreference collapse(prefs::collapseSingleEntryIndices, Value::boolean(row.preference));
        document->setPropertyAsBoolean(keys::isVisibleCleanupPostImport, row.cleanup);
        auto made = read(row.columns, row.type);
        made->setPropertyAsBoolean(row.flag, true);
        made->postLoadProcess();
        const bool isSimple = row.flag == keys::collapseSimpleIndex;
        EXPECT_EQ(table.contains(*made), !*row.becomes) << row.flag << row.type;
        EXPECT_EQ(made->hasProperty(row.flag), isSimple && !row.cleanup) << row.flag << row.type;
        const char* nameKey = isSimple ? keys::indexedKeyName : keys::uniqueIndexName;
        EXPECT_EQ(column("a").getProperty(nameKey), *row.becomes ? made->getName() : "");
        for (const char* key : {keys::unique, keys::indexed}) {
            EXPECT_EQ(column("a").getPropertyAsBoolean(key), key == std::string_view(row.becomes)) << row.flag;
            column("a").removeProperty(key);
        }
        column("a").removeProperty(nameKey);
        made->delete_();
    }
}

TEST_F(Index, IsWrittenAndCopiedWithItsColumns) {
    column("b").setProperty(keys::uid, "B");
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

    index.setProperty(keys::uid, "I");
    index.addIndexField(column("b"));
    EXPECT_THAT(index.exportToXML(), EndsWith("<prefixSize><![CDATA[10]]></prefixSize>\n"
                                              "        <fieldUid><![CDATA[B]]></fieldUid>\n    </SQLIndexEntry>\n"
                                              "    <indexType><![CDATA[UNIQUE]]></indexType>\n"
                                              "    <uid><![CDATA[I]]></uid>\n</SQLIndex>\n"))
        << "the size is that of the column";
}

TEST_F(Index, HasALabel) {
    EXPECT_EQ(index.labelForDisplay(true), "Index UNIQUE ");
    EXPECT_EQ(index.exportToSQL(), "Index UNIQUE i (a,b)");
    EXPECT_EQ(SQLIndex::index()->getLabel(), "Index idx (empty)");

    auto constraint = SQLConstraint::constraint();
    EXPECT_EQ(constraint->getLabel(), "UNIQUE (empty)");
    constraint->addIndexField(column("a"));
    constraint->setConstraintType(" UNIQUE ");
    EXPECT_EQ(constraint->getLabel(), "UNIQUE (a)");
    constraint->setCheckConstraintExpression("a > 0\nAND\r\nb > 0");
    EXPECT_EQ(constraint->labelForDisplay(true), "CHECK (a > 0 AND b > 0)");
}

TEST_F(Index, ConstraintHoldsAnExpressionOrColumns) {
    const std::pair<const char*, const char*> rows[] = {
        {"CHECK\t (f(a) > 0) NOT NULL", "f(a) > 0"},   {"a > 0", ""},           {"CHECK(a > 0)", ""},
        {"check (a > 0)", ""},                         {"CHECK (a\n> 0)", ""},
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
    const auto first = unique("u", {"a", "b"}), placed = unique("w", {"a", "b"});
    table.add(placed);
    EXPECT_TRUE(first->isEqualToConstraint(unique("v", {"a", "b"}).get()));
    EXPECT_FALSE(first->isEqualToConstraint(unique("u", {"a", "b"}).get())) << "equal names make them different";
    EXPECT_FALSE(first->isEqualToConstraint(unique("v", {"b", "a"}).get()));
    EXPECT_FALSE(first->isEqualToConstraint(placed.get()));
}

}  // namespace
}  // namespace vellicor
