// tests/model/document_objects_test.cpp — document info, comments and canvas areas.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "vellicor/export/export_dialect.h"
#include "vellicor/model/comment.h"
#include "vellicor/model/container.h"
#include "vellicor/model/document_info.h"
#include "vellicor/platform/notifications.h"

namespace vellicor {
namespace {

struct DocumentInfo : ::testing::Test {
    std::shared_ptr<SQLContainer> document = SQLContainer::newContainer();
    SQLDocumentInfo& info = *document->documentInfo();
    std::shared_ptr<StandardUndoManager> undo = std::make_shared<StandardUndoManager>();
};

TEST_F(DocumentInfo, CarriesTheVersionsOfTheFormat) {
    EXPECT_EQ(info.getProperty("generatorVersion"), "4.0.3");
    EXPECT_EQ(info.getProperty("VellicorFileFormatVersion"), "4");
    EXPECT_NE(info.getProperty("generator"), "");
    EXPECT_FALSE(info.getDropTableOption());
}

TEST_F(DocumentInfo, UndoesTheSettingsThatShapeScripts) {
    document->setUndoManager(undo);
    info.setDropTableOption(true);
    EXPECT_EQ(undo->undoActionName(), "change table drop setting");
    info.setPostExportSQL("after");
    EXPECT_EQ(undo->undoActionName(), "change appended SQL");
    info.setPrologueExportSQL("before");
    EXPECT_EQ(undo->undoActionName(), "change SQL prologue");
    info.setPrologueExportSQL(std::nullopt);
    EXPECT_EQ(info.prologueExportSQL(), "");
    for (int step = 0; step < 4; ++step) undo->undo();
    EXPECT_FALSE(info.dropTableOption());
    EXPECT_EQ(info.postExportSQL(), "");

    info.setHeader("h");
    info.setProperty(keys::hidden, "1");
    EXPECT_FALSE(undo->canUndo()) << "neither the header nor being hidden is undoable here";
    info.setProperty(keys::cardinalityNotationStyle, "crow");
    EXPECT_TRUE(undo->canUndo());
}

TEST_F(DocumentInfo, AnnouncesTheDialectOnceAndTakesItsExporter) {
    document->setUndoManager(undo);
    int announced = 0;
    const auto token = NotificationCenter::addObserver(notifications::exportDialectChanged, &info,
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
    NotificationCenter::removeObserver(token);
}

TEST_F(DocumentInfo, ReadsAndWritesItsElements) {
    auto apply = [&](const char* element, std::string_view text) {
        const Setter* setter = info.classInfo().setterFor(element);
        ASSERT_NE(setter, nullptr) << element;
        setter->apply(info, {text});
    };
    apply("PageGridVisible", "yes");
    apply("dropTableOption", "true");
    apply("documentScaleFactor", "1.50");
    apply("lastExportFileName", "script.sql");
    EXPECT_TRUE(info.getPageGridVisible());
    EXPECT_FALSE(info.getDropTableOption());
    EXPECT_EQ(info.getProperty(keys::documentScaleFactor), "1.5");
    EXPECT_FLOAT_EQ(info.getDocumentScaleFactor(), 1.5F);
    EXPECT_EQ(info.lastExportFileName(), "script.sql");
    EXPECT_EQ(info.classInfo().setterFor("documentPrintInfo"), nullptr) << "takes data, which no text gives";

    const std::string data(100, '\xff');
    info.setDocumentPrintInfo(data);
    auto other = create<SQLDocumentInfo>();
    other->setSafePropertyValue({*info.encodedPrintInfo()}, "encodedPrintInfo");
    EXPECT_EQ(other->getDocumentPrintInfo(), data);

    for (const char* key : {"generator", "generatorVersion", "uid"}) info.removeProperty(key);
    info.setEncodedPrintInfo("AAA=");
    EXPECT_EQ(*Value(info.jsonDictionary()).find("encodedPrintInfo"), Value("AAA="));
    EXPECT_EQ(info.exportToXML(), R"(<SQLDocumentInfo>
    <encodedPrintInfo><![CDATA[AAA=]]></encodedPrintInfo>
    <documentScaleFactor><![CDATA[1.5]]></documentScaleFactor>
    <dropTableOption><![CDATA[0]]></dropTableOption>
    <PageGridVisible><![CDATA[1]]></PageGridVisible>
    <VellicorFileFormatVersion><![CDATA[4]]></VellicorFileFormatVersion>
</SQLDocumentInfo>
)");
}

TEST(Comment, HasATextAndATitleOfItsOwn) {
    auto comment = SQLComment::initWithComment("text");
    auto undo = std::make_shared<StandardUndoManager>();
    comment->setUndoManager(undo);
    comment->setComment("other");
    EXPECT_EQ(undo->undoActionName(), "set comment text");
    undo->undo();
    EXPECT_EQ(comment->getComment(), "text");

    EXPECT_EQ(comment->displayName(), "");
    comment->postLoadProcess();
    EXPECT_EQ(comment->displayName(), "comment");
    comment->setDisplayName("Title");
    undo->undo();
    EXPECT_EQ(comment->displayName(), "comment");
    comment->setDisplayName("Title");
    comment->postLoadProcess();
    EXPECT_EQ(comment->displayName(), "Title");
    EXPECT_EQ(comment->getName(), "comment");
}

TEST(Comment, AndCanvasAreaAreWrittenAlikeAndCopiedWithTheirText) {
    const std::shared_ptr<SQLComment> area = SQLCanvasArea::initWithString("a ]]> b");
    for (const auto& comment : {SQLComment::initWithComment("a ]]> b"), area}) {
        comment->setProperty(keys::uid, "C");
        comment->setDisplayName("Title");
        const std::string name(comment->getClassType());
        const std::string expected = "<" + name + R"(>
    <name><![CDATA[comment]]></name>
    <comment><![CDATA[a ]]]]><![CDATA[> b]]></comment>
    <location>
        <x>0.00</x>
        <y>0.00</y>
    </location>
    <size>
        <width>0.00</width>
        <height>0.00</height>
    </size>
    <zorder>0</zorder>
    <commentTitle><![CDATA[Title]]></commentTitle>
    <uid><![CDATA[C]]></uid>
</)" + name + ">\n";
        EXPECT_EQ(comment->exportToXML(), expected);
        EXPECT_EQ(comment->copyWithZone()->exportToXML(), expected);
        EXPECT_EQ(*Value(comment->jsonDictionary()).find("ClassType"), Value(name));
        EXPECT_EQ(comment->exportToSQL(), "");
        auto read = comment->newInstance();
        read->setSafePropertyValue({"text"}, "comment");
        EXPECT_EQ(read->getComment(), "text");
    }
}

}  // namespace
}  // namespace vellicor
