// tests/model/object_style_test.cpp — fonts of objects: inheritance, writing, reading, copying.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/log_capture.h"
#include "vellicor/model/object_peer.h"
#include "vellicor/model/object_style.h"

namespace vellicor {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

const Font kSmall{"Courier", 9, false};
const Font kLarge{"Times", 20, false};
const Font kBoldSmall = FontManager::shared().convertedToBold(kSmall);

TEST(ObjectStyle, MissingFontsComeFromTheHoldersAndThenThePlatform) {
    auto document = create<SQLObjectPeer>(), table = create<SQLObjectPeer>(), field = create<SQLObjectPeer>();
    EXPECT_EQ(field->objectFont(), QVObjectStyle::defaultFont());
    for (const Font& bold : {field->boldObjectFont(), field->objectTitleFont(), field->boldObjectTitleFont()})
        EXPECT_EQ(bold, QVObjectStyle::boldDefaultFont());

    field->setContainer(table.get());
    table->setContainer(document.get());
    document->setObjectFont(kSmall);
    EXPECT_EQ(field->objectFont(), kSmall);
    EXPECT_EQ(field->boldObjectFont(), kBoldSmall);
    table->setObjectTitleFont(kLarge);
    EXPECT_EQ(field->objectTitleFont(), kLarge);
    EXPECT_EQ(field->objectFont(), QVObjectStyle::defaultFont());  // the table has settings of its own

    // A style that once had a font defers no more.
    field->setObjectFont(kLarge);
    for (const char* key : {"objectFont", "boldObjectFont"}) field->objectStyle()->setFont(std::nullopt, key);
    EXPECT_TRUE(field->objectStyle()->isEmpty());
    EXPECT_EQ(field->objectTitleFont(), QVObjectStyle::defaultTitleFont());
}

TEST(ObjectStyle, ResettingLeavesTheBoldTitleFont) {
    auto object = create<SQLObjectPeer>();
    object->setObjectFont(kSmall);
    object->setObjectTitleFont(kSmall);
    object->resetFonts();
    EXPECT_EQ(object->boldObjectTitleFont(), kBoldSmall);
    XMLElement node("o");
    object->objectStyle()->exportToXMLNode(&node);
    EXPECT_THAT(node.text(), AllOf(HasSubstr("boldObjectTitleFont"), Not(HasSubstr("\"objectFont\""))));
}

TEST(ObjectStyle, IsWrittenBehindThePropertiesInKeyOrder) {
    auto object = create<SQLObjectPeer>();
    object->setUid("U");
    EXPECT_THAT(object->exportPropertiesToXML(), Not(HasSubstr("QVObjectStyle"))) << "an empty one is not written";
    object->objectStyle()->setFont(Font{"A & B", 12.5}, "objectFont");
    object->objectStyle()->setFont(kLarge, "ZED");
    object->objectStyle()->setFont(kSmall, "boldObjectFont");
    EXPECT_EQ(object->exportPropertiesToXML(),
              "<properties>\n    <uid><![CDATA[U]]></uid>\n    <QVObjectStyle>\n"
              "        <font key=\"boldObjectFont\" name=\"Courier\" size=\"9.000000\" />\n"
              "        <font key=\"objectFont\" name=\"A &amp; B\" size=\"12.500000\" />\n"
              "        <font key=\"ZED\" name=\"Times\" size=\"20.000000\" />\n"
              "    </QVObjectStyle>\n</properties>\n");
}

TEST(ObjectStyle, ReadingLogsWhatItCannotTake) {
    testing::LogCapture logged;
    auto style = create<QVObjectStyle>();
    style->addProperty("font", {{"key", "objectFont"}, {"name", "Courier"}, {"size", "9.1"}});
    EXPECT_EQ(style->fontForKey("objectFont"), (Font{"Courier", double{9.1F}, false}));
    EXPECT_TRUE(logged.lines().empty());
    style->addProperty("font", {{"key", "objectFont"}, {"size", "9"}});
    style->addProperty("font", {{"name", "Courier"}, {"size", "9"}});
    style->addProperty("color", {});
    EXPECT_THAT(logged.lines(), ElementsAre("failed to read font {\n    key = objectFont;\n    size = 9;\n}",
                                            "[WARN] Attempted to set font on (null) with nil key",
                                            "QVObjectStyle doesn't support color keys"));
}

TEST(ObjectStyle, CopiesGoWithTheirObjectAndDefer) {
    auto document = create<SQLObjectPeer>(), object = create<SQLObjectPeer>();
    document->setObjectFont(kLarge);
    object->setObjectFont(kSmall);
    auto copy = copyOf(*object);
    EXPECT_EQ(copy->objectStyle()->styledObject(), copy.get());
    EXPECT_EQ(copy->objectFont(), kSmall);
    copy->setContainer(document.get());
    EXPECT_EQ(copy->objectFont(), kLarge);

    auto style = object->objectStyle();
    object->setObjectStyle(create<QVObjectStyle>());
    EXPECT_EQ(style->styledObject(), nullptr);
    copy->setObjectStyle(style);
    copy.reset();
    EXPECT_EQ(style->styledObject(), nullptr) << "the object is gone";
}

}  // namespace
}  // namespace vellicor
