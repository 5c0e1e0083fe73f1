// tests/model/container_test.cpp — what a document holds, and how it is found.
#include "vellicor/model/container.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/export/foreign_key_graph.h"
#include "vellicor/model/comment.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/label.h"
#include "vellicor/model/label_manager.h"
#include "vellicor/model/schema.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using vellicor::testing::LogCapture;
using vellicor::testing::ScopedPreference;
using Document = std::shared_ptr<SQLContainer>;

std::shared_ptr<SQLTable> table(std::string_view name) { return SQLTable::tableWithName(std::string(name)); }

std::shared_ptr<SQLTable> addTable(const Document& document, std::string_view name) {
    auto added = table(name);
    document->add(added);
    return added;
}

std::shared_ptr<SQLComment> comment(std::string_view name) {
    auto made = create<SQLComment>();
    made->setName(std::string(name));
    return made;
}

std::vector<std::string> names(const SQLContainer::Objects& objects) {
    std::vector<std::string> names;
    for (const auto& object : objects) names.push_back(object->getName());
    return names;
}

TEST(Container, NewOneIsEmptyButForTheUnspecifiedSchema) {
    const Document document = SQLContainer::newContainer();
    EXPECT_TRUE(document->isEmpty());
    EXPECT_FALSE(document->hasProperty(keys::uid));
    ASSERT_EQ(document->schemaList().size(), 1u);
    EXPECT_EQ(document->schemaList()[0].get(), document->defaultSchema());
    EXPECT_TRUE(document->defaultSchema()->isUnspecifiedSchema());
    EXPECT_EQ(document->documentInfo()->getProperty(keys::fileFormatVersion), "4");
    EXPECT_EQ(document->objectLabelManager()->container(), document.get());
    EXPECT_EQ(document->fkObjectGraph()->container(), document.get());
    EXPECT_EQ(document->dialectExporter(), nullptr);
    EXPECT_EQ(document->firstElement(), nullptr);
    EXPECT_EQ(document->toString(), "/*SQLContainer*/");
    document->setName("x");
    document->setLocation({1, 2});
    EXPECT_EQ(document->getName(), "");
    EXPECT_EQ(document->getLocation(), Point());
    EXPECT_EQ(document->container(), nullptr);
}

TEST(Container, TakenNamesAreReplaced) {
    const Document document = SQLContainer::newContainer();
    const auto orders = addTable(document, "orders");
    EXPECT_EQ(addTable(document, "ORDERS")->getName(), "ORDERS_1");
    EXPECT_EQ(addTable(document, "orders")->getName(), "orders_2");
    EXPECT_EQ(addTable(document, "my_table")->getName(), "my_table");
    EXPECT_EQ(addTable(document, "my_table")->getName(), "my_0");
    EXPECT_EQ(orders->getName(), "orders");

    // A comment makes way for whatever comes.
    const auto note = comment("note"), later = comment("note");
    document->add(note);
    document->add(later);
    EXPECT_EQ(note->getName(), "note_1");
    EXPECT_EQ(addTable(document, "Note_1")->getName(), "Note_1");
    EXPECT_EQ(note->getName(), "Note_2") << "numbered after the newcomer";
    EXPECT_EQ(later->getName(), "note");

    // A name that becomes free is used again; an unnamed object stays so unless it is the second.
    document->remove(*document->getObjectByName("orders_2"));
    EXPECT_EQ(addTable(document, "orders")->getName(), "orders_2");
    EXPECT_EQ(addTable(document, "")->getName(), "");
    EXPECT_EQ(addTable(document, "")->getName(), "untitled");
}

TEST(Container, ManyEqualNamesAreNumberedWithoutGaps) {
    const Document document = SQLContainer::newContainer();
    for (int i = 0; i < 200; ++i) addTable(document, "t");
    EXPECT_EQ(document->objectList().back()->getName(), "t_199");
    document->remove(*document->getObjectByName("t_50"));
    document->getObjectByName("t_70")->setName("other");
    EXPECT_EQ(addTable(document, "t")->getName(), "t_50");
    EXPECT_EQ(addTable(document, "t")->getName(), "t_70");
    EXPECT_EQ(addTable(document, "t")->getName(), "t_200");
    EXPECT_EQ(document->getValidNameForObject(*document->firstElement(), "t_3"), "t_201");
}

TEST(Container, RefusesWhatDoesNotBelongThere) {
    const Document document = SQLContainer::newContainer();
    LogCapture log;
    const auto column = SQLField::fieldWithName("id", "int");
    document->add(column);
    document->add(document);
    EXPECT_TRUE(document->isEmpty());
    document->add(SQLContainer::newContainer());
    EXPECT_TRUE(document->addObjectToContainer(SQLContainer::newContainer()));
    EXPECT_TRUE(document->isEmpty());
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_THAT(log.lines()[0], HasSubstr("AddWithRenaming: error adding field Warning adding object of type "));

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
    EXPECT_EQ(document->count(), 1u);
    EXPECT_EQ(document->objectLabelManager()->labelList().size(), 1u);

    document->setAllowsFieldObject(true);
    document->add(column);
    document->add(column);  // again: nothing
    EXPECT_EQ(names(document->objectList()), (std::vector<std::string>{"t", "id"}));
}

TEST(Container, AddingTakesTheObjectOverAndRemovingLetsItGo) {
    const Document document = SQLContainer::newContainer();
    const auto orders = addTable(document, "orders");
    EXPECT_EQ(orders->container(), document.get());
    EXPECT_EQ(document->lastObjectAdded(), orders.get());
    EXPECT_TRUE(document->uidInContainer(orders->uid()));
    EXPECT_TRUE(document->defaultSchema()->containsObject(*orders));
    EXPECT_EQ(document->objectLabelManager()->countOfObjectsWithLabel(nullptr), 1u);

    document->remove(*orders);
    EXPECT_EQ(orders->container(), nullptr);
    EXPECT_FALSE(document->contains(*orders));
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
    EXPECT_TRUE(document->isEmpty());
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
    EXPECT_EQ(labels->container(), nullptr);
    document->setObjects({orders, left});
    document->setIsTempContainer(true);
    document->remove(*left);
    EXPECT_EQ(left->container(), document.get()) << "a scratch document does not take itself away";
    document.reset();
    EXPECT_EQ(orders->container(), nullptr);
    EXPECT_EQ(replaced->container(), nullptr);
    EXPECT_EQ(left->container(), nullptr);
    EXPECT_EQ(info->container(), nullptr);
}

TEST(Container, ClashingUidsAreReplaced) {
    const Document document = SQLContainer::newContainer();
    const auto first = table("first"), second = table("second");
    first->setUid("A");
    second->setUid("A");
    document->add(first);
    document->add(second);
    EXPECT_EQ(first->uid(), "A");
    EXPECT_EQ(second->uid().size(), 36u);
    EXPECT_EQ(document->getObjectWithUID("A"), first.get());
    EXPECT_EQ(document->getObjectWithUID("a"), nullptr);

    // The list of uids is a set: what one of two loses, both lose.
    second->setUid("A");
    EXPECT_EQ(document->getObjectWithUID("A"), first.get());
    second->setUid("B");
    EXPECT_FALSE(document->uidInContainer("A"));
    EXPECT_TRUE(document->uidInContainer("B"));
    EXPECT_EQ(document->getObjectWithUID("A"), first.get());

    // Uids that arrive by other ways are found, too.
    first->setProperty(keys::uid, "C");
    EXPECT_EQ(document->getObjectWithUID("C"), first.get());
    first->setProperties({{keys::uid, "D"}});
    EXPECT_EQ(document->getObjectWithUID("D"), first.get());
    EXPECT_EQ(document->getObjectWithUID("C"), nullptr);

    const auto column = SQLField::fieldWithName("id", "int");
    second->add(column);
    EXPECT_EQ(document->objectWithUid(column->uid()), column.get());
    EXPECT_EQ(document->objectWithUid("D"), first.get());
    first->add(SQLField::fieldWithName("b", "int"));
    first->getFieldByName("b")->setUid("B");
    EXPECT_EQ(document->objectWithUid("B"), first->getFieldByName("b")) << "the column stands before the table";
    EXPECT_EQ(document->objectWithUid("nobody"), nullptr);
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
    EXPECT_EQ(names(document->objectList()), (std::vector<std::string>{"b", "a", "d", "c", "e", "f"}));
    EXPECT_EQ(names(document->objectListByZOrder()), (std::vector<std::string>{"b", "a", "d", "c", "e", "f"}));
    EXPECT_EQ(far->zOrder(), 7);
    EXPECT_EQ(huge->zOrder(), 4'000'000'000);

    huge->setZOrder(0);
    far->setZOrder(-1);
    EXPECT_EQ(names(document->objectListByZOrder()), (std::vector<std::string>{"f", "b", "a", "d", "e", "c"}));
    EXPECT_EQ(names(document->objectListSortedByZOrder()), names(document->objectListByZOrder()));
    EXPECT_EQ(document->zorderForObject(*table("stranger")), 0);
}

TEST(Container, FindsByName) {
    const Document document = SQLContainer::newContainer();
    for (const char* name : {"Orders", "public.orders", "sales.Items", "b\xC3\xBCro", "items_note"})
        addTable(document, name);
    document->add(comment("Items"));
    document->add(comment("a.b.c"));
    document->add(SQLView::viewWithName("sales.overview"));
    const NameOptions base{.caseSensitive = false, .baseNamesForTables = true};

    struct {
        OptionalText name;
        NameOptions options;
        std::string expected;  // empty: none
    } const cases[] = {
        {std::nullopt, {}, ""},
        {"Orders", {}, "Orders"},
        {"orders", {}, ""},
        {"ORDERS", {.caseSensitive = false}, "Orders"},
        {"public.orders", {}, "public.orders"},
        {"PUBLIC.Orders", {.caseSensitive = false}, "public.orders"},
        {"B\xC3\x9CRO", {.caseSensitive = false}, "b\xC3\xBCro"},
        {"\"Orders\"", {}, "Orders"},  // the split unquotes
        {"\"Or`ders'", {.stripQuotes = true}, "Orders"},
        {"a.b.c", {}, ""},  // searched as a.bc
        {"items", {.caseSensitive = false}, "Items"},
        {"items", {.caseSensitive = false, .ofClass = isKindOf<SQLTable>}, ""},
        {"sales.overview", {.ofClass = isKindOf<SQLTable>}, "sales.overview"},
        {"sales.overview", {.ofClass = isKindOf<SQLComment>}, ""},
        {"items", base, "sales.Items"},  // the table stands before the comment
        {"other.items", base, "sales.Items"},
        {"Items", {.baseNamesForTables = true}, "sales.Items"},
        {"items_note", base, "items_note"},
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
    EXPECT_EQ(document->getObjectByName("Customers", false)->getName(), "customers");
    EXPECT_EQ(document->getObjectByName("sales.Items"), nullptr);
    EXPECT_NE(document->getObjectByName("stock.Items"), nullptr);

    EXPECT_EQ(document->getObjectWithSchema("ORDERS", "public")->getName(), "public.orders");
    EXPECT_EQ(document->getObjectWithSchema("`customers`", "nowhere")->getName(), "customers");
    EXPECT_EQ(document->getObjectWithSchema("orders", ""), nullptr) << "only the one in a schema is left";
    EXPECT_EQ(document->getObjectWithSchema("note", std::nullopt), nullptr);
}

TEST(Container, TheFirstInTheListIsFound) {
    const Document document = SQLContainer::newContainer();
    const auto a = table("same"), b = table("SAME"), c = table("Same");
    document->setObjects({a, b, c});
    EXPECT_EQ(document->getObjectByName("same", false), a.get());
    document->moveElementToPosition(*a, SQLContainer::kEnd);
    EXPECT_EQ(document->getObjectByName("same", false), b.get());
    b->setName("different");
    EXPECT_EQ(document->getObjectByName("same", false), c.get());
    EXPECT_EQ(document->getObjectByName("same"), a.get());
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
    loose->setUid("L");
    EXPECT_EQ(scratch->getObjectByName("sales.customers"), orders.get());
    EXPECT_EQ(scratch->getObjectByName("orders"), nullptr);
    EXPECT_EQ(scratch->getObjectWithUID("L"), loose.get());
    loose->setProperties({{keys::uid, "M"}});
    EXPECT_EQ(scratch->getObjectWithUID("M"), loose.get());
    orders->setSchemaName("stock");
    EXPECT_EQ(scratch->getObjectByName("stock.customers"), orders.get());
    EXPECT_TRUE(scratch->isObjectNamePresent("STOCK.Customers"));

    scratch->remove(*orders);
    EXPECT_EQ(orders->container(), document.get());

    // An object that moves on to another document stays listed.
    const Document target = SQLContainer::newContainer();
    target->merge(*document);
    orders->setName("moved");
    EXPECT_EQ(document->getObjectByName("moved"), orders.get());
    EXPECT_EQ(target->getObjectByName("moved"), orders.get());
}

TEST(Container, MovingRemovesAndInserts) {
    const Document document = SQLContainer::newContainer();
    for (const char* name : {"a", "b", "c", "d"}) addTable(document, name);
    const auto b = document->objectList()[1];
    document->moveElementToPosition(*b, 1);
    EXPECT_EQ(b->container(), document.get()) << "nothing for the place it has";
    document->moveElementToPosition(*b, 2);
    EXPECT_EQ(names(document->objectList()), (std::vector<std::string>{"a", "c", "b", "d"}));
    EXPECT_EQ(b->container(), nullptr);
    EXPECT_FALSE(document->uidInContainer(b->uid()));
    EXPECT_EQ(document->objectListByZOrder().size(), 3u);
    document->moveElementToPosition(*b, SQLContainer::kEnd);
    document->moveElementToPosition(*table("stranger"), 0);
    EXPECT_EQ(names(document->objectList()), (std::vector<std::string>{"a", "c", "d", "b"}));

    const auto list = document->objectList();
    EXPECT_EQ(document->getNextObject(*list[3]), list[0].get());
    EXPECT_EQ(document->getPreviousObject(*list[0]), list[3].get());
    EXPECT_EQ(document->getNextObject(*list[0]), list[1].get());
    EXPECT_EQ(document->getNextObject(*table("stranger")), nullptr);
    EXPECT_EQ(names(document->reverseObjectList()), (std::vector<std::string>{"b", "d", "c", "a"}));
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
    const Document document = SQLContainer::newContainer();
    const auto customers = addTable(document, "customers"), orders = addTable(document, "orders");
    customers->add(SQLField::fieldWithName("id", "int"));
    const auto key = SQLForeignKey::initWithName("orders_fk");
    orders->add(key);
    key->setTargetTable(customers.get());
    EXPECT_EQ(document->validNameForForeignKey(*key, "orders_fk", true), "orders_fk");
    EXPECT_EQ(document->foreignKeyWithName("orders_fk"), key.get());
    EXPECT_EQ(document->foreignKeyWithName("nobody"), nullptr);
    EXPECT_EQ(document->foreignKeyList().size(), 2u) << "columns count, resolved or not";

    ScopedPreference unique(prefs::forceForeignKeyUnique);
    orders->add(SQLField::fieldWithName("total", "int"));
    orders->add(SQLField::fieldWithName("total_fk_1", "int"));
    EXPECT_EQ(document->validNameForForeignKey(*key, "other", true), "other");
    EXPECT_EQ(document->validNameForForeignKey(*key, "orders_fk", true), "orders_fk_fk_1");
    EXPECT_EQ(document->validNameForForeignKey(*key, "total", true), "total_fk_2");
    EXPECT_EQ(document->validNameForForeignKey(*key, "total", false), "total");
    key->setName("a_fk_7");
    EXPECT_EQ(document->validNameForForeignKey(*key, "a_fk_7", true), "a_fk_8");
}

TEST(Container, DocumentInfoIsCopiedInto) {
    const Document document = SQLContainer::newContainer();
    SQLDocumentInfo* own = document->documentInfo();
    const auto other = create<SQLDocumentInfo>();
    other->setHeader("top");
    other->setEncodedPrintInfo("cHJpbnQ=");
    own->setFooter("gone");
    document->add(other);
    EXPECT_EQ(document->documentInfo(), own);
    EXPECT_EQ(own->getHeader(), "top");
    EXPECT_FALSE(own->hasProperty(keys::footer));
    EXPECT_EQ(own->encodedPrintInfo(), "cHJpbnQ=");
    EXPECT_EQ(own->uid(), other->uid());
    EXPECT_NE(document->dialectExporter(), nullptr);
    document->setDocumentInfo(*own);
    EXPECT_EQ(own->getHeader(), "top");
    EXPECT_TRUE(document->isEmpty());
}

TEST(Container, MergingRenamesAndGivesFreshUids) {
    const Document document = SQLContainer::newContainer(), pasted = SQLContainer::newContainer();
    const auto orders = addTable(document, "orders");
    const auto same = as<SQLTable>(copyOf(*orders));
    pasted->add(same);
    const auto fresh = addTable(pasted, "fresh");
    const std::string uid = fresh->uid();
    orders->setPropertyAsBoolean(keys::incompleteReferenceTarget, true);

    document->merge(*pasted);
    EXPECT_EQ(names(document->objectList()), (std::vector<std::string>{"orders", "orders_1", "fresh"}));
    EXPECT_NE(same->uid(), orders->uid());
    EXPECT_EQ(fresh->uid(), uid);
    EXPECT_EQ(fresh->container(), document.get());
    EXPECT_FALSE(orders->hasProperty(keys::incompleteReferenceTarget));
    document->merge(*document);
    EXPECT_EQ(document->count(), 3u);
}

TEST(Container, Geometry) {
    const Document document = SQLContainer::newContainer();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(document->origin(), (Point{infinity, infinity}));
    EXPECT_EQ(document->minimumRectForContainer(), Rect());
    const auto a = addTable(document, "a"), b = addTable(document, "b");
    a->setFrame({{100, 120}, {200, 100}});
    b->setFrame({{150, 50}, {10, 10}});
    EXPECT_EQ(document->origin(), (Point{100, 50}));
    EXPECT_EQ(document->minimumRectForContainer(), (Rect{{100, 50}, {200, 170}}));
    document->relocateAllToBase({100, 50});
    EXPECT_EQ(document->origin(), Point());
    EXPECT_EQ(b->location(), (Point{50, 0}));
}

}  // namespace
}  // namespace vellicor
