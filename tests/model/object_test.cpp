// tests/model/object_test.cpp — properties, uids, names, places, undo, elements and copies of model objects.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "tests/support/log_capture.h"
#include "vellicor/model/iterator.h"
#include "vellicor/model/label.h"
#include "vellicor/model/object_peer.h"
#include "vellicor/model/table_component.h"
#include "vellicor/model/value_objects.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/json.h"
#include "vellicor/platform/regular_expression.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using Events = std::vector<std::string>;

/// Stands in for whatever holds objects, and writes down what it is told.
class Holder : public SQLObject {
public:
    void uidChanged(std::string_view newUid, SQLObject& object) override {
        events.push_back(text("%@ becomes %@", object.uid(), newUid));
    }
    void memberUidDidChange(SQLObject& member) override { events.push_back("has " + member.uid()); }
    void memberNameDidChange(SQLObject& member) override { events.push_back("named " + member.getName()); }
    Events take() { return std::exchange(events, {}); }
    Events events;
};

struct Witness : KeyObserver {
    explicit Witness(Events& events) : events(events) {}
    void willChangeValue(const void*, std::string_view key) override { events.push_back(text("will %@", key)); }
    void didChangeValue(const void*, std::string_view key) override { events.push_back(text("did %@", key)); }
    Events& events;
};

TEST(ObjectUid, IsAFreshUuidFromTheFirstMoment) {
    auto object = create<SQLObject>();
    const std::string uid = object->uid();
    const RegularExpression canonical("^[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}$");
    EXPECT_TRUE(canonical.firstMatch(uid)) << uid;
    EXPECT_EQ(object->getUid(), uid);
    object->resetUid();
    EXPECT_NE(object->uid(), uid);
    EXPECT_NE(create<SQLObject>()->uid(), create<SQLObject>()->uid());
    // Every way to the properties sees it.
    EXPECT_EQ(create<SQLObject>()->properties()->internalProperties().find("uid")->text().size(), 36u);
    EXPECT_EQ(create<SQLObject>()->propertiesAsDictionary().at(0).second.text().size(), 36u);
    EXPECT_EQ(create<SQLObject>()->properties()->valueForKey("uid")->text().size(), 36u);
    EXPECT_TRUE(create<SQLObject>()->hasProperty("uid"));
    // One given before anybody looked stays.
    auto given = create<SQLObject>();
    given->setProperties({{"uid", "B"}});
    EXPECT_EQ(given->uid(), "B");
    given = create<SQLObject>();
    given->removeProperty("uid");
    EXPECT_EQ(given->uid(), "");
}

TEST(ObjectUid, TheHolderHearsOfEveryChange) {
    auto holder = create<Holder>();
    auto object = create<SQLObject>();
    object->setUid("A");
    object->setContainer(holder.get());
    EXPECT_TRUE(object->setUid("B"));
    EXPECT_THAT(holder->take(), ElementsAre("A becomes B", "has B"));
    object->setProperty("uid", "C");
    object->setProperties({{"x", "1"}, {"uid", "D"}});
    object->setProperty("x", "2");
    object->removeProperty("uid");
    EXPECT_THAT(holder->take(), ElementsAre("has C", "has D", "has "));
}

TEST(ObjectProperties, NullsAreLoggedAndChangeNothing) {
    testing::LogCapture logged;
    auto object = create<SQLObject>();
    object->setProperty("key", "old");
    object->setProperty("key", std::nullopt);
    object->setPropertyValue("new", std::nullopt);
    object->setComment(std::nullopt);
    EXPECT_THAT(logged.lines(), ElementsAre("attempted to set nil value for property: key",
                                            "attempted to set nil key for property",
                                            "attempted to set nil value for property: objectComment"));
    EXPECT_EQ(object->getProperty("key"), "old");
    EXPECT_EQ(object->getProperty("absent"), "");
    EXPECT_FALSE(object->hasProperty("absent"));
}

TEST(ObjectProperties, MissingPartsAreAssertions) {
    SQLObject withoutDictionary;
    try {
        withoutDictionary.setProperty("key", "value");
        FAIL();
    } catch (const AssertionFailure& failure) {
        EXPECT_EQ(failure.reason(), "Properties should not be nil");
    }
    EXPECT_EQ(withoutDictionary.getProperty("key"), "");
    EXPECT_THROW(QVMutableNotifyingPropertyDictionary(nullptr), AssertionFailure);
}

TEST(ObjectProperties, FlagsAreTextThatIsScanned) {
    auto object = create<SQLObject>();
    for (const char* yes : {"yes", "T", "01", " +1", "9"}) {
        object->setProperty("flag", yes);
        EXPECT_TRUE(object->getPropertyAsBoolean("flag")) << yes;
    }
    for (const char* no : {"0", "no", "", "00", "x1"}) {
        object->setProperty("flag", no);
        EXPECT_FALSE(object->getPropertyAsBoolean("flag")) << no;
    }
    object->setPropertyAsBoolean("flag", true);
    EXPECT_EQ(object->getProperty("flag"), "1");
    object->setPropertyAsBoolean("flag", false);
    EXPECT_EQ(object->getProperty("flag"), "0");
    EXPECT_FALSE(object->getPropertyAsBoolean("absent"));
}

TEST(PropertyMapTest, KeepsTheOrderOfArrivalHoweverMany) {
    PropertyMap map;
    for (int i = 0; i < 60; ++i) map.set(std::to_string(i), PropertyValue::integer(i));
    for (int i : {59, 0, 30}) EXPECT_TRUE(map.remove(std::to_string(i)));
    EXPECT_FALSE(map.remove("0"));
    map.set("1", "again");
    map.set("0", "last");
    EXPECT_EQ(map.size(), 58u);
    EXPECT_EQ(map.find("58")->text(), "58");
    EXPECT_EQ(map.find("59"), nullptr);
    EXPECT_EQ(map.begin()->value.text(), "again");
    EXPECT_EQ(std::prev(map.end())->key.view(), "0");
    for (int i = 1; i < 59; ++i) map.remove(std::to_string(i));
    EXPECT_EQ(map.find("0")->text(), "last");
    EXPECT_EQ(map.size(), 1u);
}

class Hooked : public SQLObject {
public:
    void propertyWillChange(std::string_view key, const PropertyValue* current, const PropertyValue* next) override {
        auto shown = [](const PropertyValue* value) { return value ? value->text() : "null"; };
        events.push_back(text("hook %@ %@ %@, reads %@", key, shown(current), shown(next), getProperty(key)));
    }
    void propertyDidChange(std::string_view key) override {
        events.push_back(text("hooked %@ %@", key, getProperty(key)));
    }
    Events events;
};

TEST(PropertyDictionary, AnnouncesEachChangeAroundTheHooks) {
    auto object = create<Hooked>();
    Witness onKey(object->events);
    Witness onOwner(object->events);
    object->properties()->addObserver(onKey, "key");
    object->addObserver(onOwner, "properties");

    auto change = [](std::string_view current, std::string_view next, std::string_view before, std::string_view after) {
        return Events{"will key", "will properties", text("hook key %@ %@, reads %@", current, next, before),
                      "will key", "did properties",  text("hooked key %@", after)};
    };
    object->properties()->setObject("a", "key");
    EXPECT_EQ(std::exchange(object->events, {}), change("null", "a", "", "a"));
    object->setProperty("key", "b");
    EXPECT_EQ(std::exchange(object->events, {}), change("a", "b", "a", "b"));
    object->removeProperty("key");
    EXPECT_EQ(std::exchange(object->events, {}), change("b", "null", "b", ""));
    object->removeProperty("key");
    EXPECT_EQ(std::exchange(object->events, {}), change("null", "null", "", ""));

    auto other = create<SQLObject>();
    other->setProperty("key", PropertyValue::integer(5));
    object->setProperties({{"x", "y"}});
    object->properties()->addEntriesFromDictionary(*other->properties());
    EXPECT_THAT(object->events, IsEmpty());
    EXPECT_EQ(object->uid(), other->uid());
    EXPECT_EQ(object->getProperty("key"), "5");

    object->properties()->removeAllObjects();
    EXPECT_EQ(object->properties()->count(), 0u);
    EXPECT_EQ(object->events.size(), 3u * 4 + 2);  // uid, x, key; the key's own observer hears of one
}

TEST(ObjectUndo, OnlyWhatIsUndoableIsRegistered) {
    auto undo = std::make_shared<StandardUndoManager>();
    auto object = create<SQLObject>();
    object->setUndoManager(undo);
    auto undoGives = [&](std::string_view key, std::string_view value, bool present) {
        ASSERT_TRUE(undo->canUndo());
        undo->undo();
        EXPECT_EQ(object->getProperty(key), value);
        EXPECT_EQ(object->hasProperty(key), present);
    };
    object->setProperty("other", "1");
    EXPECT_FALSE(undo->canUndo());
    object->setProperty("hidden", "1");
    object->setProperty("hidden", "0");
    undoGives("hidden", "1", true);
    undoGives("hidden", "", false);
    undo->redo();
    EXPECT_EQ(object->getProperty("hidden"), "1");
    undo->removeAllActions();

    object->setUndoableProperty("key", "a");
    object->setUndoableProperty("key", "b");
    object->removeUndoableProperty("key");
    object->removeUndoableProperty(std::nullopt);
    undoGives("key", "b", true);
    undoGives("key", "a", true);
    undoGives("key", "", false);
    EXPECT_FALSE(undo->canUndo());

    object->setName("orders");
    EXPECT_EQ(undo->undoActionName(), "set object name");
    undo->undo();
    EXPECT_EQ(object->name(), std::nullopt);
    undo->redo();
    EXPECT_EQ(object->getName(), "orders");
}

TEST(ObjectUndo, GoesThroughTheHolderIfAtAll) {
    struct WithoutUndo : SQLObject {
        bool supportsUndo() const override { return false; }
    };
    auto holder = create<Holder>();
    holder->setUndoManager(std::make_shared<StandardUndoManager>());
    for (std::shared_ptr<SQLObject> object : {create<SQLObject>(), std::shared_ptr<SQLObject>(create<WithoutUndo>())}) {
        const bool supports = object->supportsUndo();
        auto own = std::make_shared<StandardUndoManager>();
        object->setUndoManager(own);
        EXPECT_EQ(object->undoManager(), supports ? own.get() : nullptr);
        object->setContainer(holder.get());
        EXPECT_EQ(object->undoManager(), supports ? holder->undoManager() : nullptr);
    }
}

TEST(ObjectUndo, AnotherThreadRegistersNothingEvenWhenItIsTheFirstToChangeSomething) {
    auto undo = std::make_shared<StandardUndoManager>();
    auto object = create<SQLObject>();
    object->setUndoManager(undo);
    std::thread([&] {
        object->setName("elsewhere");
        object->setUndoableProperty("key", "1");
        object->setProperty("hidden", "1");
    }).join();
    EXPECT_FALSE(undo->canUndo());
    object->setName("here");
    EXPECT_TRUE(undo->canUndo());
}

TEST(ObjectLabel, LeavesItsTextsInTheProperties) {
    auto undo = std::make_shared<StandardUndoManager>();
    auto object = create<SQLObject>();
    auto label = SQLObjectLabel::labelWithName("urgent", Color::sRGB(1, 0, 0));
    object->setUndoManager(undo);
    object->setLabel(label);
    EXPECT_EQ(undo->undoActionName(), "set label");
    EXPECT_EQ(object->getProperty("labelName"), "urgent");
    EXPECT_EQ(object->getProperty("labelColor"), "{1,0,0,1,sRGBColorSpace}");
    EXPECT_EQ(object->getProperty("labelUid"), label->uid());
    undo->undo();
    EXPECT_EQ(object->label(), nullptr);
    for (const char* key : {"labelName", "labelColor", "labelUid"}) EXPECT_FALSE(object->hasProperty(key)) << key;

    object->setLabelIndex(7);
    EXPECT_EQ(object->labelIndex(), 7);
    object->setLabelIndex(static_cast<std::uint64_t>(-1));
    EXPECT_EQ(object->getProperty("labelWindowIndex"), "18446744073709551615");
    EXPECT_EQ(object->labelIndex(), 2147483647);
}

TEST(ObjectNameAndPlace, ObserversAndTheHolderHearOfChanges) {
    auto holder = create<Holder>();
    auto object = create<SQLObject>();
    object->setContainer(holder.get());
    Events events;
    Witness witness(events);
    for (const char* key : {"name", "displayName", "frame"}) object->addObserver(witness, key);
    object->setDisplayName("orders");
    EXPECT_THAT(std::exchange(events, {}), ElementsAre("will name", "will displayName", "did displayName", "did name"));
    object->setName("orders");
    EXPECT_EQ(std::exchange(events, {}).size(), 4u);
    EXPECT_THAT(holder->take(), ElementsAre("named orders"));
    object->setLocation({1, 2});
    object->setSize({3, 4});
    EXPECT_THAT(events, ElementsAre("will frame", "did frame", "will frame", "did frame"));
    EXPECT_EQ(object->frame(), (Rect{{1, 2}, {3, 4}}));
}

TEST(ObjectNameAndPlace, MovingRunsTheOverridableSetters) {
    struct Pinned : SQLObject {
        void setLocation(Point) override {}
    };
    auto object = create<SQLObject>();
    object->setLocationFromObject(*SQLPoint::pointWithPoint({3, 4}));
    object->setSizeFromObject(*SQLSize::sizeWithSize({5, 6}));
    EXPECT_EQ(object->frame(), (Rect{{3, 4}, {5, 6}}));
    object->relocateToOrigin(-3, -4);
    EXPECT_EQ(object->location(), Point());
    auto pinned = create<Pinned>();
    pinned->setFrame({{1, 1}, {2, 2}});
    EXPECT_EQ(pinned->frame(), (Rect{{0, 0}, {2, 2}}));
    pinned->setFrameWithoutUpdate({{1, 1}, {2, 2}});
    EXPECT_EQ(pinned->location(), (Point{1, 1}));
}

TEST(ValueObjects, SizesReadAsTextAreOfSinglePrecision) {
    testing::LogCapture logged;
    SQLPoint point;
    SQLSize size;
    EXPECT_EQ(SQLPoint::kClassInfo.setterFor("uid"), nullptr);
    SQLPoint::kClassInfo.setterFor("x")->apply(point, {"0.1"});
    SQLPoint::kClassInfo.setterFor("y")->apply(point, {"-2.5e1"});
    SQLSize::kClassInfo.setterFor("width")->apply(size, {"0.1"});
    SQLSize::kClassInfo.setterFor("height")->apply(size, {"0.5"});
    EXPECT_EQ(point.pointValue(), (Point{0.1, -25}));
    EXPECT_EQ(size.sizeValue(), (Size{double{0.1F}, 0.5}));
    size.setSafePropertyValue({"0.1"}, "width");
    size.setSafePropertyValue({"7"}, "x");
    point.setSafePropertyValue({"3"}, "x");
    point.setSafePropertyValue({"4"}, "y");
    EXPECT_EQ(size.sizeValue(), (Size{0.1, 0.5}));
    EXPECT_EQ(point.description(), "{3, 4}");
    EXPECT_THAT(logged.lines(), IsEmpty());
    SQLValue().setSafePropertyValue({"1"}, "z");
    EXPECT_THAT(logged.lines(), ElementsAre("SQLValue setSafePropertyValue called with key z"));
}

TEST(ObjectReading, EachClassTakesItsOwnNamesInEitherCase) {
    auto object = create<SQLObjectPeer>();
    auto set = [&](std::string_view name, const LoadedValue& value) {
        const Setter* setter = object->classInfo().setterFor(name);
        ASSERT_NE(setter, nullptr) << name;
        setter->apply(*object, value);
    };
    auto point = SQLPoint::pointWithPoint({3, 4});
    auto size = SQLSize::sizeWithSize({5, 6});
    set("Name", {"orders"});
    set("uid", {"U"});
    set("comment", {"c"});
    set("labelIndex", {"12 of 13"});
    set("displayNamePending", {"pending"});
    set("location", {"", point.get()});
    set("size", {"", size.get()});
    set("size", {"", point.get()});
    set("Location", {"text"});
    set("zOrder", {"5"});
    set("hasViewPeer", {"yes"});
    set("mustValidateName", {"true"});
    EXPECT_EQ(object->getName(), "orders");
    EXPECT_EQ(object->uid(), "U");
    EXPECT_EQ(object->getComment(), "c");
    EXPECT_EQ(object->labelIndex(), 12);
    EXPECT_EQ(object->displayNamePending(), "pending");
    EXPECT_EQ(object->frame(), (Rect{{3, 4}, {5, 6}}));
    EXPECT_EQ(object->getProperty("Location"), "text");
    EXPECT_TRUE(object->getHasViewPeer());
    EXPECT_FALSE(object->mustValidateName());
    // Detached, the stacking order only waits in the properties.
    EXPECT_EQ(object->getProperty("zorder"), "5");
    EXPECT_EQ(object->zOrder(), 0);
    for (const char* absent : {"", "zorder", "label", "frame", "minimumSize", "objectFont", "NAME", "sizeFromObject"})
        EXPECT_EQ(object->classInfo().setterFor(absent), nullptr) << absent;
    EXPECT_EQ(SQLObject::kClassInfo.setterFor("zOrder"), nullptr);
}

TEST(ObjectReading, TheCarefulRouteKnowsFourKeys) {
    auto object = create<SQLObjectPeer>();
    auto point = SQLPoint::pointWithPoint({3, 4});
    object->setSafePropertyValue({"orders"}, "name");
    object->setSafePropertyValue({"U"}, "uid");
    object->setSafePropertyValue({"", point.get()}, "location");
    object->setSafePropertyValue({"", point.get()}, "size");
    object->setSafePropertyValue({"9"}, "location");
    object->setSafePropertyValue({"", point.get()}, "name");
    object->setSafePropertyValue({"5"}, "zOrder");
    EXPECT_EQ(object->getName(), "orders");
    EXPECT_EQ(object->frame(), (Rect{{3, 4}, {0, 0}}));
    EXPECT_EQ(object->getProperty("zOrder"), "5");
    EXPECT_EQ(object->properties()->allKeys(), (std::vector<std::string>{"uid", "zOrder"}));
    EXPECT_EQ(object->uid(), "U");
}

TEST(ObjectElements, PropertiesAreSortedAndSomeLeftOut) {
    auto object = create<SQLObject>();
    object->removeProperty("uid");
    for (const char* key : {"zOrder", "pkX", "PK_KEY_NAME", "a1", "ab", "a_b", "A", "a"}) object->setProperty(key, key);
    object->setProperty("MEM-x", "1");
    object->setProperty("empty", "");
    object->setProperty("number", PropertyValue::integer(5));
    object->setProperty("text", " <&]]>");
    EXPECT_EQ(object->exportPropertiesToXML(),
              "<properties>\n"
              "    <A><![CDATA[A]]></A>\n    <a><![CDATA[a]]></a>\n    <a1><![CDATA[a1]]></a1>\n"
              "    <a_b><![CDATA[a_b]]></a_b>\n    <ab><![CDATA[ab]]></ab>\n    <number><![CDATA[5]]></number>\n"
              "    <PK_KEY_NAME><![CDATA[PK_KEY_NAME]]></PK_KEY_NAME>\n    <pkX><![CDATA[pkX]]></pkX>\n"
              "    <text><![CDATA[ <&]]]]><![CDATA[>]]></text>\n    <zOrder><![CDATA[zOrder]]></zOrder>\n"
              "</properties>\n");
    EXPECT_EQ(object->quoteForXML("a]]>b]]>"), "<![CDATA[a]-]>b]-]>]]>");
    EXPECT_EQ(object->quoteForXML(std::nullopt), "");
    EXPECT_EQ(object->exportToXML(), "<SQLObject />\n");
}

TEST(ObjectElements, PlacesHaveTwoFractionDigits) {
    struct Third : SQLObject {
        std::int64_t zOrder() const override { return 3; }
    };
    auto object = create<Third>();
    object->setFrame({{0.125, -0.001}, {1e6, 2.5}});
    XMLElement parent("p");
    object->exportLocationToXMLNode(parent);
    EXPECT_EQ(parent.text(),
              "<p>\n    <location>\n        <x>0.12</x>\n        <y>-0.00</y>\n    </location>\n"
              "    <size>\n        <width>1000000.00</width>\n        <height>2.50</height>\n    </size>\n"
              "    <zorder>3</zorder>\n</p>\n");
}

TEST(ObjectTexts, DescriptionsAndJson) {
    auto object = create<SQLObject>();
    EXPECT_THAT(object->description(), MatchesRegex("<SQLObject: 0x[0-9a-f]+> \\(null\\)"));
    object->setName("%@");
    EXPECT_THAT(object->description(), MatchesRegex("<SQLObject: 0x[0-9a-f]+> %@"));
    EXPECT_EQ(object->json(), R"({"ClassType":"SQLObject"})");
    EXPECT_EQ(create<SQLObjectPeer>()->json(), object->json());
    EXPECT_EQ(create<SQLObjectPeer>()->getClassType(), "unknown");
    EXPECT_THAT(object->flatObjectList(), ElementsAre(object));
}

TEST(ObjectCopy, HasEverythingButTheHolder) {
    auto holder = create<Holder>();
    auto object = create<SQLObjectPeer>();
    auto label = SQLObjectLabel::labelWithName("urgent", Color::sRGB(1, 0, 0));
    object->setContainer(holder.get());
    object->setName("orders");
    object->setLabel(label);
    object->setProperty("key", PropertyValue::integer(5));
    object->setFrame({{1, 2}, {3, 4}});
    auto copy = copyOf(*object);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->name(), "orders");
    EXPECT_NE(copy->label(), label);
    EXPECT_EQ(copy->label()->uid(), label->uid());
    auto sorted = [](const SQLObject& of) {
        auto entries = of.propertiesAsDictionary();
        std::sort(entries.begin(), entries.end(), [](auto& a, auto& b) { return a.first < b.first; });
        return entries;
    };
    EXPECT_EQ(sorted(*copy), sorted(*object));
    EXPECT_EQ(copy->frame(), object->frame());
    EXPECT_EQ(copy->container(), nullptr);
}

TEST(ObjectCopy, NamesAreNotUnquotedOnceMore) {
    auto component = create<SQLTableComponent>();
    EXPECT_EQ(copyOf(*component)->name(), std::nullopt);
    component->setName(R"("a\"b")");
    EXPECT_EQ(component->getName(), R"(a"b)");
    EXPECT_EQ(copyOf(*component)->getName(), R"(a"b)");
}

TEST(SchemaNames, SplitAtUnquotedDots) {
    struct Case {
        const char* name;
        const char* base;
        const char* schema;
        const char* trimmed;
    };
    for (const Case& c : {
             Case{"", "", "", ""},
             {"orders", "orders", "", "orders"},
             {"public.orders", "orders", "public", "public.orders"},
             {R"("my.schema".t)", "t", "my.schema", "my.schema.t"},
             {R"("a.b")", "a.b", "", "a.b"},
             {"a.b.c", "bc", "a", "a.b.c"},
             {".x", "x", "", ".x"},
             {"`a`.'b'", "'b'", "a", "a.'b'"},
             {R"(a\.b.c)", "c", R"(a\.b)", R"(a\.b.c)"},
             {R"(\"a.b")", "b", R"(\"a)", R"(\"a.b)"},
             {R"("a\"b\c")", R"(a"b\c)", "", R"(a"b\c)"},
             {R"("a\)", "a", "", "a"},
             {R"(größe."π")", "π", "größe", "größe.π"},
         }) {
        EXPECT_EQ(SQLObjectPeer::splitNameBySchema(c.name), (NameParts{c.base, c.schema})) << c.name;
        EXPECT_EQ(SQLObjectPeer::trimName(c.name), c.trimmed) << c.name;
    }
}

TEST(Iterator, EndsWithNullAndALogLine) {
    testing::LogCapture logged;
    auto object = create<SQLObject>();
    auto cursor = SQLIterator::iteratorForArray({object});
    EXPECT_TRUE(cursor.hasNext());
    EXPECT_EQ(cursor.next(), object);
    EXPECT_FALSE(cursor.hasNext());
    EXPECT_EQ(cursor.next(), nullptr);
    EXPECT_THAT(logged.lines(), ElementsAre("SQLIterator beyond array"));
}

}  // namespace
}  // namespace vellicor
