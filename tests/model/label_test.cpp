// tests/model/label_test.cpp — labels, and the groups of objects that carry them.
#include "vellicor/model/label.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "vellicor/model/container.h"
#include "vellicor/model/label_manager.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/notifications.h"

namespace vellicor {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;
using ::testing::UnorderedElementsAre;

const Color kRed = Color::sRGB(1, 0, 0), kBlue = Color::sRGB(0, 0, 1);

struct LabelManager : ::testing::Test {
    std::shared_ptr<SQLContainer> document = SQLContainer::newContainer();
    SQLObjectLabelManager& manager = *document->objectLabelManager();
    std::shared_ptr<StandardUndoManager> undo = std::make_shared<StandardUndoManager>();
    int announcements = 0;
    Observation heard = NotificationCenter::observe(
        notifications::objectLabelListChanged, &manager, [this](std::string_view, const void*) { ++announcements; });

    std::shared_ptr<SQLTable> add(std::string_view name, std::optional<std::uint64_t> labelIndex = {}) {
        auto table = SQLTable::tableWithName(std::string(name));
        if (labelIndex) table->setLabelIndex(*labelIndex);
        document->add(table);
        return table;
    }
    std::string group(const SQLObjectLabel* label) const {
        std::string names;
        for (const SQLObject* object : manager.tablesWithLabel(label)) names += object->getName();
        return names;
    }
};

TEST(Label, KeepsItsColourInSRGBAndReadsItsElements) {
    const auto label = SQLObjectLabel::labelWithName("urgent", Color{1, 0, 0, 1, ColorSpace::DeviceRGB});
    EXPECT_EQ(label->color().space, ColorSpace::SRGB);
    const auto read = create<SQLObjectLabel>(), safe = create<SQLObjectLabel>();
    for (const char* key : {"hidden", "expanded"}) {
        read->classInfo().setterFor(key)->apply(*read, {"1"});
        safe->setSafePropertyValue({"1"}, key);
    }
    for (const auto& each : {read, safe}) {
        EXPECT_TRUE(each->isHidden() && each->isExpanded());
        EXPECT_FALSE(each->hasProperty("hidden") || each->hasProperty("expanded"));
    }
    label->setIsHidden(true);
    label->setIsDefault(true);
    const auto copy = copyOf(*label);
    EXPECT_EQ(copy->uid(), label->uid());
    EXPECT_EQ(copy->color(), label->color());
    EXPECT_TRUE(copy->isHidden() && copy->isDefault() && !copy->isExpanded());
    const std::string xml = label->exportToXML();
    EXPECT_THAT(xml, ::testing::HasSubstr("<colorString><![CDATA[" + label->colorString() +
                                          "]]></colorString>\n    <hidden>1</hidden>\n"));
    EXPECT_EQ(xml.find("expanded"), std::string::npos);
}

TEST_F(LabelManager, ListIsUndoableAndAnnounced) {
    document->setUndoManager(undo);
    const auto red = SQLObjectLabel::labelWithName("red", kRed), twin = SQLObjectLabel::labelWithName("red", kRed);
    manager.addLabel(red, true);
    manager.addLabel(twin, true);
    EXPECT_THAT(manager.labelList(), ElementsAre(red)) << "same name and colour";
    manager.addLabel(twin, false);
    EXPECT_THAT(manager.labelList(), ElementsAre(red, twin));
    EXPECT_EQ(announcements, 2);
    undo->undo();
    EXPECT_THAT(manager.labelList(), ElementsAre(red));
    undo->redo();
    manager.removeLabel(red);
    EXPECT_THAT(manager.labelList(), ElementsAre(twin));
    undo->undo();
    EXPECT_THAT(manager.labelList(), ElementsAre(twin, red));
    EXPECT_EQ(announcements, 6);
    EXPECT_EQ(manager.labelMatchingLabel(*red), twin) << "the first of that look";
    EXPECT_EQ(manager.labelWithUid(red->uid()), red);
}

TEST_F(LabelManager, FindsByNameAndColourAsTheyAre) {
    const auto red = manager.objectLabelWithName("a", kRed);
    EXPECT_EQ(manager.objectLabelWithName("a", kRed), red);
    EXPECT_NE(manager.objectLabelWithName("a", kBlue), red);
    red->setName("z");
    EXPECT_NE(manager.objectLabelWithName("a", kRed), red);
    red->setColor(kBlue);
    EXPECT_EQ(manager.objectLabelWithName("z", kBlue), red);
    red->setUid("R");
    manager.sortLabelTable();
    EXPECT_EQ(manager.labelList().back(), red);
    EXPECT_EQ(manager.labelWithUid("R"), red);

    const auto other = SQLContainer::newContainer();
    other->objectLabelManager()->objectLabelWithName("z", kBlue);
    other->objectLabelManager()->loadLabelsFromManager(manager);
    EXPECT_EQ(other->objectLabelManager()->labelList().size(), 3u);
    add("t")->setLabel(red);
    red->setIsHidden(true);
    EXPECT_TRUE(copyOf(*document)->objectLabelManager()->labelWithUid("R")->isHidden());
}

TEST_F(LabelManager, TablesGetTheLabelTheyName) {
    auto load = [&](const char* name, const std::string& color, const char* uid = "") {
        const auto table = add("t");
        for (auto [key, value] : {std::pair{keys::labelName, std::string(name)}, {keys::labelColor, color},
                                  {keys::labelUid, std::string(uid)}})
            if (!value.empty()) table->setProperty(key, value);
        manager.createLabelFromObjectIfRequired(*table);
        return table;
    };
    for (const char* none : {"Default", "null", ""}) EXPECT_EQ(load(none, kRed.string())->label(), nullptr) << none;
    const auto first = load("urgent", kRed.string()), second = load("urgent", kRed.string());
    const auto third = load("urgent", kBlue.string()), saved = load("saved", "", "S");
    ASSERT_NE(first->label(), nullptr);
    EXPECT_EQ(second->label(), first->label());
    EXPECT_NE(third->label(), first->label());
    EXPECT_EQ(first->getProperty(keys::labelUid), first->label()->uid());
    EXPECT_EQ(saved->label()->uid(), "S");
    EXPECT_EQ(manager.objectCountByLabel().size(), 4u) << "three labels, and the objects without one";

    const auto plain = add("plain");
    EXPECT_EQ(manager.labelColorForObject(*first), kRed);
    EXPECT_EQ(manager.labelColorForObject(*plain), plain->defaultLabelColor());
    plain->setProperty(keys::fieldBackgroundColor, kBlue.string());
    EXPECT_EQ(manager.labelColorForObject(*plain), kBlue);
    plain->setProperty(keys::labelColor, kRed.string());
    EXPECT_EQ(manager.labelColorForObject(*plain), kRed);
}

TEST_F(LabelManager, GroupsFollowTheObjectsLabels) {
    const auto a = add("a"), b = add("b"), c = add("c");
    EXPECT_EQ(group(nullptr), "cba") << "without an index each goes first";
    const auto d = add("d", 1), e = add("e", 99);
    EXPECT_EQ(group(nullptr), "cdbae");

    const auto red = SQLObjectLabel::labelWithName("red", kRed);
    manager.addLabel(red, false);
    b->setLabel(red);
    d->setLabel(red);
    EXPECT_EQ(group(nullptr) + " " + group(red.get()), "cae bd");
    EXPECT_THAT(manager.objectCountByLabel(), UnorderedElementsAre(Pair("Default", 3u), Pair(red->uid(), 2u)));
    red->setIsDefault(true);
    EXPECT_EQ(manager.countOfObjectsWithLabel(red.get()), 3u) << "the default label is no group of its own";
    red->setIsDefault(false);
    document->remove(*d);
    b->setLabel(nullptr);
    EXPECT_EQ(group(nullptr) + " " + group(red.get()), "bcae ");

    manager.moveObject(*e, 1);
    EXPECT_EQ(group(nullptr), "beca");
    EXPECT_EQ(a->labelIndex(), 3);
    manager.moveObject(*b, 99);
    EXPECT_EQ(group(nullptr), "ecab");

    c->setLabelIndex(0);
    e->setLabelIndex(2);
    manager.postLoadProcess();
    EXPECT_EQ(group(nullptr), "ceab");
    manager.reorderTablesFromIndexes("Default");
    EXPECT_EQ(e->labelIndex(), 1);
}

}  // namespace
}  // namespace vellicor
