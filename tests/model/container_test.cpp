// tests/model/container_test.cpp — what a document holds, and how it is found.
#include "vellicor/model/container.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <tuple>

#include "tests/model/documents.h"
#include "tests/support/document_builder.h"
#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/model/comment.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/label.h"
#include "vellicor/model/label_manager.h"
#include "vellicor/model/schema.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using vellicor::testing::addTable;
using vellicor::testing::Document;
using vellicor::testing::LogCapture;
using vellicor::testing::names;
using vellicor::testing::ScopedPreference;

std::shared_ptr<SQLTable> table(std::string_view name) { return SQLTable::tableWithName(std::string(name)); }

std::shared_ptr<SQLComment> comment(std::string_view name) {
    auto made = create<SQLComment>();
    made->setName(std::string(name));
    return made;
}

TEST(Container, TakenNamesAreReplaced) {
    const Document document = SQLContainer::newContainer();
    auto nameOfAdded = [&](const char* name) { return addTable(document, name)->getName(); };
    for (auto [name, given] : {std::pair{"orders", "orders"}, {"ORDERS", "ORDERS_1"}, {"orders", "orders_2"},
                               {"my_table", "my_table"}, {"my_table", "my_0"}})
        EXPECT_EQ(nameOfAdded(name), given);

    // A comment makes way for whatever comes.
    const auto note = comment("note"), later = comment("note");
    document->add(note);
    document->add(later);
    EXPECT_EQ(note->getName(), "note_1");
    EXPECT_EQ(nameOfAdded("Note_1"), "Note_1");
    EXPECT_EQ(note->getName(), "Note_2") << "numbered after the newcomer";
    EXPECT_EQ(later->getName(), "note");

    // A name that becomes free is used again; an unnamed object stays so unless it is the second.
    EXPECT_EQ(nameOfAdded("orders"), "orders_3");
    document->remove(*document->getObjectByName("orders_2"));
    EXPECT_EQ(nameOfAdded("orders"), "orders_2");
    document->getObjectByName("ORDERS_1")->setName("other");
    EXPECT_EQ(nameOfAdded("orders"), "orders_1");
    EXPECT_EQ(document->getValidNameForObject(*document->firstElement(), "orders_3"), "orders_4");
    EXPECT_EQ(nameOfAdded(""), "");
    EXPECT_EQ(nameOfAdded(""), "untitled");
}

TEST(Container, RefusesWhatDoesNotBelongThere) {
    const Document document = SQLContainer::newContainer();
    LogCapture log;
    const auto column = SQLField::fieldWithName("id", "int");
    document->add(column);
    document->add(document);
    document->add(SQLContainer::newContainer());
    EXPECT_TRUE(document->addObjectToContainer(SQLContainer::newContainer()));
    EXPECT_TRUE(document->isEmpty());
    EXPECT_THAT(log.lines(),
                ElementsAre(HasSubstr("AddWithRenaming: error adding field Warning adding object of type ")));

    const auto schema = SQLSchema::schemaWithName("s");
    try {
        document->add(schema);
        FAIL();
    } catch (const SQLException& error) {
        EXPECT_EQ(error.name(), "unknown type exception");
        EXPECT_EQ(error.reason(), "Warning adding object of type " + schema->description() +
                                      " failed, only subclasses of SQLObjectPeer can be added to SQLContainers");
    }
    document->addObjects({schema, table("t"), SQLObjectLabel::labelWithName("l", Color::white())});
    EXPECT_EQ(log.lines().back(), "Note: ignored object: " + schema->description());
    EXPECT_EQ(document->objectLabelManager()->labelList().size(), 1u);

    document->setAllowsFieldObject(true);
    document->add(column);
    document->add(column);  // again: nothing
    EXPECT_EQ(names(document->objectList()), "t id");
}

TEST(Container, RemovingLetsTheObjectGoEverywhere) {
    const Document document = SQLContainer::newContainer();
    const auto orders = addTable(document, "orders");
    document->remove(*orders);
    EXPECT_EQ(orders->container(), nullptr);
    EXPECT_FALSE(document->uidInContainer(orders->uid()));
    EXPECT_TRUE(document->defaultSchema()->isEmpty());
    EXPECT_EQ(document->objectLabelManager()->countOfObjectsWithLabel(nullptr), 0u);
    EXPECT_THAT(document->objectListByZOrder(), IsEmpty());
    EXPECT_EQ(document->getObjectByName("orders"), nullptr);

    document->add(orders);
    document->addSchema(SQLSchema::schemaWithName("kept"));
    document->schemaList().back()->setAutoDeleteWhenEmpty(false);
    document->removeAll();
    EXPECT_EQ(orders->container(), nullptr);
    EXPECT_EQ(document->schemaList().size(), 2u);
    EXPECT_EQ(addTable(document, "orders")->getName(), "orders");
}

TEST(Container, ObjectsOutliveTheirDocument) {
    Document document = SQLContainer::newContainer();
    const auto orders = addTable(document, "orders"), replaced = addTable(document, "replaced");
    const auto left = addTable(document, "left");
    const auto info = shared(document->documentInfo());
    const auto labels = document->objectLabelManager()->shared_from_this();
    document->setObjectLabelManager(nullptr);
    EXPECT_EQ(document->objectLabelManager(), labels.get());
    document->setObjectLabelManager(create<SQLObjectLabelManager>(document.get()));
    document->setObjects({orders, left});
    document->setIsTempContainer(true);
    document->remove(*left);
    EXPECT_EQ(left->container(), document.get()) << "a scratch document does not take itself away";
    document.reset();
    const std::vector<std::shared_ptr<SQLObject>> all{orders, replaced, left, info};
    for (const auto& object : all) EXPECT_EQ(object->container(), nullptr);
    EXPECT_EQ(labels->container(), nullptr);
}

TEST(Container, ClashingUidsAreReplaced) {
    const Document document = SQLContainer::newContainer();
    const auto first = table("first"), second = table("second");
    first->setUid("A");
    second->setUid("A");
    document->add(first);
    document->add(second);
    EXPECT_EQ(first->uid(), "A");
    EXPECT_NE(second->uid(), "A");

    // The list of uids is a set: what one of two loses, both lose.
    second->setUid("A");
    EXPECT_EQ(document->getObjectWithUID("A"), first.get());
    second->setUid("B");
    EXPECT_FALSE(document->uidInContainer("A"));
    EXPECT_EQ(document->getObjectWithUID("A"), first.get());

    // Uids that arrive by other ways are found, too.
    first->setProperty(keys::uid, "C");
    EXPECT_EQ(document->getObjectWithUID("C"), first.get());
    first->setProperties({{keys::uid, "D"}});
    EXPECT_EQ(document->getObjectWithUID("D"), first.get());
    EXPECT_EQ(document->getObjectWithUID("C"), nullptr);
    first->add(SQLField::fieldWithName("b", "int"));
    first->getFieldByName("b")->setUid("B");
    EXPECT_EQ(document->objectWithUid("B"), first->getFieldByName("b")) << "the column stands before the table";
}

TEST(Container, StackingOrderPlacesAnObjectInTheListToo) {
    const Document document = SQLContainer::newContainer();
    auto add = [&](std::string_view name, std::int64_t zorder) {
        const auto object = table(name);
        object->setZOrder(zorder);
        document->add(object);
        EXPECT_FALSE(object->hasProperty(keys::zorder));
        return object;
    };
    addTable(document, "a");
    add("b", 0);
    const auto far = add("c", 7);
    add("d", 2);
    add("e", -1);
    const auto huge = add("f", 4'000'000'000);
    EXPECT_EQ(names(document->objectList()), "b a d c e f");
    EXPECT_EQ(far->zOrder(), 7);
    EXPECT_EQ(huge->zOrder(), 4'000'000'000);

    huge->setZOrder(0);
    far->setZOrder(-1);
    EXPECT_EQ(names(document->objectListByZOrder()), "f b a d e c");
    EXPECT_EQ(document->zorderForObject(*table("stranger")), 0);
}

TEST(Container, FindsByName) {
    const Document document = SQLContainer::newContainer();
    for (const char* name : {"Orders", "public.orders", "sales.Items", "b\xC3\xBCro", "items_note"})
        addTable(document, name);
    document->add(comment("Items"));
    document->add(SQLView::viewWithName("sales.overview"));
    const NameOptions base{.caseSensitive = false, .baseNamesForTables = true};

    const std::tuple<OptionalText, NameOptions, const char*> cases[] = {  // the last is empty: none
        {std::nullopt, {}, ""},
        {"orders", {}, ""},
        {"ORDERS", {.caseSensitive = false}, "Orders"},
        {"PUBLIC.Orders", {.caseSensitive = false}, "public.orders"},
        {"B\xC3\x9CRO", {.caseSensitive = false}, "b\xC3\xBCro"},
        {"\"Orders\"", {}, "Orders"},  // the split unquotes
        {"\"Or`ders'", {.stripQuotes = true}, "Orders"},
        {"items", {.caseSensitive = false, .ofClass = isKindOf<SQLTable>}, ""},
        {"sales.overview", {.ofClass = isKindOf<SQLTable>}, "sales.overview"},
        {"items", base, "sales.Items"},  // the table stands before the comment
        {"other.items", base, "sales.Items"},
        {"orders", base, "Orders"},
        {"orders", {.baseNamesForTables = true}, "public.orders"},
    };
    for (const auto& [name, options, expected] : cases) {
        const SQLObjectPeer* object = document->getObjectByName(name, options);
        EXPECT_EQ(object ? object->getName() : "", expected) << name.value_or("null");
    }

    document->getObjectByName("Orders")->setName("customers");
    as<SQLTable>(document->getObjectByName("sales.Items"))->setSchemaName("stock");
    EXPECT_EQ(document->getObjectByName("orders", base)->getName(), "public.orders");
    EXPECT_EQ(document->getObjectByName("sales.Items"), nullptr);

    EXPECT_EQ(document->getObjectWithSchema("ORDERS", "public")->getName(), "public.orders");
    EXPECT_EQ(document->getObjectWithSchema("`customers`", "nowhere")->getName(), "customers");
    EXPECT_EQ(document->getObjectWithSchema("orders", ""), nullptr) << "only the one in a schema is left";
}

TEST(Container, ScratchDocumentsLeaveObjectsWithTheirHolder) {
    const Document document = SQLContainer::newContainer(), scratch = SQLContainer::newContainer();
    scratch->setIsTempContainer(true);
    const auto orders = addTable(document, "orders");
    const auto loose = table("loose");
    scratch->add(loose);
    scratch->addObjectToContainer(orders);
    EXPECT_EQ(orders->container(), document.get());
    EXPECT_EQ(loose->container(), nullptr);

    // Names and uids are current there, too, whoever the holder is.
    orders->setName("sales.customers");
    EXPECT_EQ(scratch->getObjectByName("sales.customers"), orders.get());
    EXPECT_EQ(scratch->getObjectByName("orders"), nullptr);
    loose->setUid("L");
    EXPECT_EQ(scratch->getObjectWithUID("L"), loose.get());
    loose->setProperties({{keys::uid, "M"}});
    EXPECT_EQ(scratch->getObjectWithUID("M"), loose.get());

    // An object that moves on to another document stays listed.
    const Document target = SQLContainer::newContainer();
    target->merge(*document);
    orders->setName("moved");
    for (const Document& each : {document, target, scratch}) EXPECT_EQ(each->getObjectByName("moved"), orders.get());
}

TEST(Container, MovingRemovesAndInserts) {
    const Document document = testing::document("a(id INT);; b(id INT);; c(id INT);; d(id INT)");
    const auto b = document->objectList()[1];
    document->moveElementToPosition(*b, 1);
    EXPECT_EQ(b->container(), document.get()) << "nothing for the place it has";
    document->moveElementToPosition(*b, 2);
    EXPECT_EQ(names(document->objectList()), "a c b d");
    EXPECT_EQ(b->container(), nullptr);
    EXPECT_FALSE(document->uidInContainer(b->uid()));
    EXPECT_EQ(document->objectListByZOrder().size(), 3u);
    document->moveElementToPosition(*b, SQLContainer::kEnd);
    document->moveElementToPosition(*table("stranger"), 0);
    EXPECT_EQ(names(document->reverseObjectList()), "b d c a");
    EXPECT_EQ(document->getPreviousObject(*document->firstElement()), b.get());
}

/// The list as a plain vector would answer.
TEST(Container, BehavesLikeAPlainListAtAnySize) {
    const Document document = SQLContainer::newContainer();
    std::vector<std::shared_ptr<SQLObjectPeer>> plain;
    std::mt19937 random(7);
    auto below = [&](std::size_t bound) { return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random); };
    for (int step = 0; step < 2500; ++step) {
        const std::size_t choice = below(10);
        if (choice < 6 || plain.empty()) {
            const auto added = table("t" + std::to_string(below(400)));
            const std::size_t place = below(plain.size() + 1);
            added->setZOrder(static_cast<std::int64_t>(place));
            document->addObjectToContainer(added);
            plain.insert(plain.begin() + static_cast<std::ptrdiff_t>(place), added);
        } else {
            const std::size_t place = below(plain.size());
            const auto object = plain[place];
            if (choice < 7) {
                object->setName("T" + std::to_string(below(400)));
            } else if (choice < 9) {
                document->remove(*object);
                plain.erase(plain.begin() + static_cast<std::ptrdiff_t>(place));
            } else {
                const std::size_t target = below(plain.size());
                document->moveElementToPosition(*object, target);
                plain.erase(plain.begin() + static_cast<std::ptrdiff_t>(place));
                plain.insert(plain.begin() + static_cast<std::ptrdiff_t>(target), object);
            }
        }
        if (step == 1500) {
            document->reorderByUID();
            std::ranges::stable_sort(plain, {}, [](const auto& object) { return object->uid(); });
        }
        const std::string wanted = "T" + std::to_string(below(400));
        const auto first =
            std::ranges::find_if(plain, [&](const auto& each) { return equalIgnoringCase(each->getName(), wanted); });
        ASSERT_EQ(document->getObjectByName(wanted, false), first == plain.end() ? nullptr : first->get()) << step;
    }
    ASSERT_EQ(document->objectList(), plain);
    for (std::size_t i = 0; i + 1 < plain.size(); ++i)
        ASSERT_EQ(document->getNextObject(*plain[i]), plain[i + 1].get());
}

TEST(Container, ForeignKeyNamesAreFreeWhereThePreferenceAsksForIt) {
    const Document document =
        testing::document("customers(id INT);; orders(total INT; total_fk_1 INT; key orders_fk () -> customers())");
    auto* key = as<SQLForeignKey>(testing::table(*document, "orders")->getObjectByName("orders_fk"));
    EXPECT_EQ(document->foreignKeyWithName("orders_fk"), key);
    EXPECT_EQ(document->foreignKeyList().size(), 4u) << "columns count, resolved or not";
    EXPECT_EQ(document->validNameForForeignKey(*key, "orders_fk", true), "orders_fk");

    ScopedPreference unique(prefs::forceForeignKeyUnique);
    EXPECT_EQ(document->validNameForForeignKey(*key, "orders_fk", true), "orders_fk_fk_1");
    EXPECT_EQ(document->validNameForForeignKey(*key, "total", true), "total_fk_2");
    key->setName("a_fk_7");
    EXPECT_EQ(document->validNameForForeignKey(*key, "a_fk_7", true), "a_fk_8");
}

TEST(Container, DocumentInfoIsCopiedInto) {
    const Document document = SQLContainer::newContainer();
    SQLDocumentInfo* own = document->documentInfo();
    const auto other = create<SQLDocumentInfo>();
    other->setEncodedPrintInfo("cHJpbnQ=");
    own->setFooter("gone");
    document->add(other);
    EXPECT_EQ(document->documentInfo(), own);
    EXPECT_FALSE(own->hasProperty(keys::footer));
    EXPECT_EQ(own->encodedPrintInfo(), "cHJpbnQ=");
    EXPECT_EQ(own->uid(), other->uid());
    EXPECT_NE(document->dialectExporter(), nullptr);
    document->setDocumentInfo(*own);
    EXPECT_EQ(own->uid(), other->uid()) << "copying into itself loses nothing";
    EXPECT_TRUE(document->isEmpty());
}

TEST(Container, MergingRenamesAndGivesFreshUids) {
    const Document document = SQLContainer::newContainer(), pasted = SQLContainer::newContainer();
    const auto orders = addTable(document, "orders"), same = as<SQLTable>(copyOf(*orders));
    pasted->add(same);
    const auto fresh = addTable(pasted, "fresh");
    const std::string uid = fresh->uid();
    orders->setPropertyAsBoolean(keys::incompleteReferenceTarget, true);

    document->merge(*pasted);
    document->merge(*document);
    EXPECT_EQ(names(document->objectList()), "orders orders_1 fresh");
    EXPECT_NE(same->uid(), orders->uid());
    EXPECT_EQ(fresh->uid(), uid);
    EXPECT_EQ(fresh->container(), document.get());
    EXPECT_FALSE(orders->hasProperty(keys::incompleteReferenceTarget));
}

TEST(Container, Geometry) {
    EXPECT_EQ(SQLContainer::newContainer()->minimumRectForContainer(), Rect());
    const Document document = testing::document("a(id INT);; b(id INT)");
    const auto list = document->objectList();
    list[0]->setFrame({{100, 120}, {200, 100}});
    list[1]->setFrame({{150, 50}, {10, 10}});
    EXPECT_EQ(document->minimumRectForContainer(), (Rect{{100, 50}, {200, 170}}));
    document->relocateAllToBase({100, 50});
    EXPECT_EQ(list[1]->location(), (Point{50, 0}));
    EXPECT_EQ(document->origin(), Point());
}

TEST(Container, AnswersInTheTypesThatItWasAskedFor) {
    const auto document = SQLContainer::newContainer();
    const auto orders = SQLTable::tableWithName("orders"), again = SQLTable::tableWithName("Orders");
    const struct {
        std::shared_ptr<SQLObject> given;
        bool taken;
        const char* name;
    } additions[] = {{orders, true, "orders"},       {again, true, "Orders_1"},
                     {orders, false, "orders"},
                     {SQLField::fieldWithName("c", "int"), false, "c"}, {document, false, ""},
                     {SQLView::viewWithName("v"), true, "v"}, {SQLObjectLabel::labelWithName("red", Color::white()), true, "red"}};
    for (const auto& [given, taken, name] : additions) {
        const AddResult result = document->add(given);
        EXPECT_EQ(bool(result), taken) << name;
        EXPECT_EQ(result.name, name);
    }
    EXPECT_EQ(document->tableNamed("orders"), orders.get());
    EXPECT_EQ(document->tableNamed("ORDERS_1", {.caseSensitive = false}), again.get());
    EXPECT_EQ(document->objectNamed<SQLView>("orders"), nullptr);
    const NameOptions capital{.caseSensitive = false, .ofClass = [&](SQLObject& object) { return &object != orders.get(); }};
    EXPECT_EQ(document->getObjectByName("orders", capital), nullptr);
    std::string walked;
    document->forEachObject<SQLTable>([&](SQLTable& table) { walked += table.getName() + ' '; });
    EXPECT_EQ(walked, "orders Orders_1 v ");

    orders->add(SQLField::fieldWithName("id", "int"));
    orders->add(SQLIndex::indexWithName("id"));
    EXPECT_EQ(orders->fieldNamed("ID"), orders->getField(0));
    EXPECT_EQ(orders->componentNamed<SQLIndex>("id"), orders->getField(1));
    orders->remove(*orders->fieldNamed("id"));
    EXPECT_EQ(orders->fieldNamed("id"), nullptr);
    orders->setProperty("key", "value");
    EXPECT_EQ(orders->propertiesAsDictionary().textForKey("key"), "value");
    EXPECT_FALSE(orders->propertiesAsDictionary().hasKey("Key"));

    const auto undo = std::make_shared<StandardUndoManager>();
    document->setUndoManager(undo);
    {
        const UndoGroup group(document->undoManager(), "rename both");
        orders->setName("a");
        again->setName("b");
    }
    EXPECT_EQ(undo->undoActionName(), "rename both");
    undo->undo();
    EXPECT_NE(document->tableNamed("orders"), nullptr);
    EXPECT_NE(document->tableNamed("Orders_1"), nullptr);
}

}  // namespace
}  // namespace vellicor
