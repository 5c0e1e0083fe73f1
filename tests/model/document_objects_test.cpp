// tests/model/document_objects_test.cpp — document info, comments, canvas areas and views.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/log_capture.h"
#include "vellicor/model/export_dialect.h"
#include "vellicor/model/comment.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/field.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/notifications.h"

namespace vellicor {
namespace {

using testing::LogCapture;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct DocumentInfo : ::testing::Test {
    std::shared_ptr<SQLContainer> document = SQLContainer::newContainer();
    SQLDocumentInfo& info = *document->documentInfo();
    std::shared_ptr<StandardUndoManager> undo = std::make_shared<StandardUndoManager>();
};

TEST_F(DocumentInfo, UndoesTheSettingsThatShapeScripts) {
    document->setUndoManager(undo);
    info.setDropTableOption(true);
    EXPECT_EQ(undo->undoActionName(), "change table drop setting");
    info.setPostExportSQL("after");
    EXPECT_EQ(undo->undoActionName(), "change appended SQL");
    info.setPrologueExportSQL("before");
    EXPECT_EQ(undo->undoActionName(), "change SQL prologue");
    for (int step = 0; step < 3; ++step) undo->undo();
    EXPECT_FALSE(info.dropTableOption());

    info.setHeader("h");
    info.setProperty(keys::hidden, "1");
    EXPECT_FALSE(undo->canUndo()) << "neither the header nor being hidden is undoable here";
    info.setProperty(keys::cardinalityNotationStyle, "crow");
    EXPECT_TRUE(undo->canUndo());
}

TEST_F(DocumentInfo, AnnouncesTheDialectOnceAndTakesItsExporter) {
    document->setUndoManager(undo);
    int announced = 0;
    const auto heard = NotificationCenter::observe(notifications::exportDialectChanged, &info,
                                                   [&](std::string_view, const void*) { ++announced; });
    info.setDefaultExportDialect("SQLite");
    EXPECT_EQ(announced, 0);
    EXPECT_FALSE(undo->canUndo());
    info.setExportDialect("Oracle");
    EXPECT_EQ(announced, 1);
    EXPECT_EQ(document->dialectExporter()->getName(), "Oracle");
    EXPECT_EQ(undo->undoActionName(), "change export dialect");
    undo->undo();
    EXPECT_EQ(announced, 2);
    EXPECT_EQ(info.getExportDialect(), "SQLite");
    EXPECT_EQ(document->dialectExporter()->getName(), "SQLite");
}

TEST_F(DocumentInfo, ReadsAndWritesItsElements) {
    auto apply = [&](const char* element, std::string_view text) {
        info.classInfo().setterFor(element)->apply(info, {text});
    };
    apply("PageGridVisible", "yes");
    apply("dropTableOption", "true");
    apply("documentScaleFactor", "1.50");
    EXPECT_TRUE(info.getPageGridVisible());
    EXPECT_FALSE(info.getDropTableOption());
    EXPECT_EQ(info.getProperty(keys::documentScaleFactor), "1.5");
    EXPECT_EQ(info.classInfo().setterFor("documentPrintInfo"), nullptr) << "takes data, which no text gives";

    const std::string data(100, '\xff');
    info.setDocumentPrintInfo(data);
    auto other = create<SQLDocumentInfo>();
    other->setSafePropertyValue({*info.encodedPrintInfo()}, "encodedPrintInfo");
    EXPECT_EQ(other->getDocumentPrintInfo(), data);
    EXPECT_EQ(*Value(info.jsonDictionary()).find("encodedPrintInfo"), Value(*info.encodedPrintInfo()));
}

TEST(Comment, HasATextAndATitleOfItsOwn) {
    auto comment = SQLComment::initWithComment("text");
    auto undo = std::make_shared<StandardUndoManager>();
    comment->setUndoManager(undo);
    comment->setComment("other");
    EXPECT_EQ(undo->undoActionName(), "set comment text");
    undo->undo();
    EXPECT_EQ(comment->getComment(), "text");

    struct : KeyObserver {
        void willChangeValue(const void*, std::string_view) override { ++announced; }
        void didChangeValue(const void* object, std::string_view) override {
            heard = static_cast<const SQLObject*>(object)->displayName();
        }
        int announced = 0;
        std::string heard;
    } observer;
    comment->addObserver(observer, "displayName");
    comment->postLoadProcess();
    EXPECT_EQ(comment->displayName(), "comment");
    comment->setDisplayName("Title");
    EXPECT_EQ(observer.heard, "Title");
    undo->undo();
    EXPECT_EQ(comment->displayName(), "comment");
    EXPECT_EQ(observer.heard, "comment");
    EXPECT_EQ(observer.announced, 3);
    comment->setDisplayName("Title");
    comment->postLoadProcess();
    EXPECT_EQ(comment->displayName() + comment->getName(), "Titlecomment");
}

TEST(Comment, AndCanvasAreaAreCopiedWithTheirTextAndNotExported) {
    const std::shared_ptr<SQLComment> area = SQLCanvasArea::initWithString("a ]]> b");
    for (const auto& comment : {SQLComment::initWithComment("a ]]> b"), area}) {
        comment->setDisplayName("Title");
        EXPECT_EQ(comment->copyWithZone()->exportToXML(), comment->exportToXML());
        EXPECT_EQ(*Value(comment->jsonDictionary()).find("ClassType"), Value(std::string(comment->getClassType())));
        EXPECT_EQ(comment->exportToSQL(), "");
    }
}

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
        view->addColumn("b");
        view->addSelectColumn("a . b");
        view->addSelectColumn("c");
        view->addTableEntry("t", "x");
        view->addTableEntry("s . u", "");
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
    const char* warning = "[WARN] attempted to add something that was not a SQLViewEntry to SQLView model";
    EXPECT_THAT(log.lines(), ElementsAre(warning, warning));
    auto first = SQLViewEntry::viewEntryWithName("a", "column");
    auto second = SQLViewEntry::viewEntryWithName("b", "column");
    second->setUid(first->uid());
    view->add(first);
    view->add(second);
    EXPECT_NE(first->uid(), second->uid());
    EXPECT_TRUE(document->uidInContainer(second->uid()));
    EXPECT_THAT(rows(*view), ElementsAre("column a", "column b"));
}

TEST_F(View, IsWrittenAndCopiedWhole) {
    view->setQueryString("SELECT a.b, c FROM t AS x, u");
    view->setComment("note");
    view->setFrame({{1, 2}, {3, 4}});
    view->setSortPosition(7);
    view->add(SQLViewEntry::viewEntryWithName("t", "table"));
    auto copy = copyOf(*view);
    EXPECT_EQ(copy->exportToXML(), view->exportToXML());
    EXPECT_EQ(copy->getSortPosition(), 7);
    EXPECT_THAT(copy->columns(), ElementsAre("b"));
    EXPECT_THAT(copy->selectColumns(), ElementsAre("a . b", "c"));
    EXPECT_THAT(copy->tableList(), ElementsAre("t AS x", "s . u"));

    const Value json(view->jsonDictionary());
    EXPECT_EQ(*json.find("fullyQualifiedName"), Value("s.v"));
    EXPECT_EQ(json.find("fields"), nullptr);
    const Value& row = json.find("entries")->asList()->front();
    EXPECT_EQ(*row.find("ClassType"), Value("SQLViewEntry"));
    EXPECT_EQ(*row.find("properties")->find("type"), Value("table"));
}

}  // namespace
}  // namespace vellicor
