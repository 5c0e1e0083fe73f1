// tests/model/view_test.cpp — views: their rows, their query's parts, their form in documents.
#include "vellicor/model/view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/log_capture.h"
#include "vellicor/model/field.h"

namespace vellicor {
namespace {

using testing::LogCapture;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> rows(const SQLView& view) {
    std::vector<std::string> rows;
    for (const auto& row : view.fields()) rows.push_back(row->getProperty(keys::viewEntryType) + " " + row->getName());
    return rows;
}

struct View : ::testing::Test {
    std::shared_ptr<SQLContainer> document = SQLContainer::newContainer();
    std::shared_ptr<SQLView> view = SQLView::viewWithName("s.v");

    void SetUp() override {
        document->add(view);
        view->setQueryString("SELECT a.b, c FROM t AS x, u");
        view->addColumn("b");
        view->addSelectColumn("a . b");
        view->addSelectColumn("c");
        view->addTableEntry("t", "x");
        view->addTableEntry("s . u", "");
        view->setComment("note");
        view->setFrame({{1, 2}, {3, 4}});
        view->setSortPosition(7);
    }
};

TEST_F(View, ShowsThePartsOfItsQueryAsRows) {
    EXPECT_THAT(rows(*view), IsEmpty());
    for (int times = 0; times < 2; ++times) {
        view->updateFieldList();
        EXPECT_THAT(rows(*view), ElementsAre("label columns", "column a.b", "column c", "label tables", "table t AS x",
                                             "table s.u"));
    }
    EXPECT_FALSE(document->uidInContainer(view->getField(0)->uid())) << "the document does not hear of these rows";
    EXPECT_THAT(view->flatObjectList(), ElementsAre(view));
}

TEST_F(View, TakesNothingButRows) {
    LogCapture log;
    view->add(SQLField::fieldWithName("f", "INT"));
    view->add(nullptr);
    EXPECT_THAT(log.lines(),
                ElementsAre("[WARN] attempted to add something that was not a SQLViewEntry to SQLView model",
                            "[WARN] attempted to add something that was not a SQLViewEntry to SQLView model"));
    auto first = SQLViewEntry::viewEntryWithName("a", "column");
    auto second = SQLViewEntry::viewEntryWithName("b", "column");
    second->setUid(first->uid());
    view->add(first);
    view->add(second);
    EXPECT_NE(first->uid(), second->uid());
    EXPECT_TRUE(document->uidInContainer(second->uid()));
    EXPECT_EQ(second->parentTable(), view.get());
    EXPECT_THAT(rows(*view), ElementsAre("column a", "column b"));
}

TEST_F(View, IsWrittenRowsBeforePlaceAndCopiedWhole) {
    view->setProperty(keys::uid, "V");
    view->add(SQLViewEntry::viewEntryWithName("t", "table"));
    view->getField(0)->setProperty(keys::uid, "R");
    const std::string expected = R"(<SQLView>
    <name><![CDATA[v]]></name>
    <schema><![CDATA[s]]></schema>
    <comment><![CDATA[note]]></comment>
    <SQLViewEntry>
        <name><![CDATA[t]]></name>
        <type><![CDATA[table]]></type>
        <uid><![CDATA[R]]></uid>
    </SQLViewEntry>
    <location>
        <x>1.00</x>
        <y>2.00</y>
    </location>
    <size>
        <width>3.00</width>
        <height>4.00</height>
    </size>
    <zorder>0</zorder>
    <objectComment><![CDATA[note]]></objectComment>
    <queryString><![CDATA[SELECT a.b, c FROM t AS x, u]]></queryString>
    <uid><![CDATA[V]]></uid>
</SQLView>
)";
    EXPECT_EQ(view->exportToXML(), expected);
    auto copy = copyOf(*view);
    EXPECT_EQ(copy->exportToXML(), expected);
    EXPECT_EQ(copy->getSortPosition(), 7);
    EXPECT_THAT(copy->columns(), ElementsAre("b"));
    EXPECT_THAT(copy->selectColumns(), ElementsAre("a . b", "c"));
    EXPECT_THAT(copy->tableList(), ElementsAre("t AS x", "s . u"));

    const Value json(view->jsonDictionary());
    EXPECT_EQ(*json.find("ClassType"), Value("SQLView"));
    EXPECT_EQ(*json.find("fullyQualifiedName"), Value("s.v"));
    EXPECT_EQ(json.find("fields"), nullptr);
    const Value& row = json.find("entries")->asList()->front();
    EXPECT_EQ(*row.find("ClassType"), Value("SQLViewEntry"));
    EXPECT_EQ(*row.find("properties")->find("type"), Value("table"));
}

}  // namespace
}  // namespace vellicor
