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
    using SQLObject::SQLObject;
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

TEST(ObjectUid, IsThereFromTheFirstMomentWhicheverWayItIsRead) {
    EXPECT_EQ(create<SQLObject>()->properties()->internalProperties().find("uid")->text().size(), 36u);
    EXPECT_EQ(create<SQLObject>()->propertiesAsDictionary().at(0).second.text().size(), 36u);
    EXPECT_EQ(create<SQLObject>()->properties()->valueForKey("uid")->text().size(), 36u);
    EXPECT_TRUE(create<SQLObject>()->hasProperty("uid"));
    auto given = create<SQLObject>(), removed = create<SQLObject>();
    given->setProperties({{"uid", "B"}});
    removed->removeProperty("uid");
    EXPECT_EQ(given->uid() + removed->uid(), "B") << "what was decided before anybody looked stays";
}

TEST(ObjectUid, TheHolderHearsOfEveryChange) {
    auto holder = create<Holder>();
    auto object = create<SQLObject>();
    object->setUid("A");
    object->setContainer(holder.get());
    object->setUid("B");
    EXPECT_THAT(holder->take(), ElementsAre("A becomes B", "has B"));
    object->setProperty("uid", "C");
    object->setProperties({{"x", "1"}, {"uid", "D"}});
    object->setProperty("x", "2");
    object->removeProperty("uid");
    EXPECT_THAT(holder->take(), ElementsAre("has C", "has D", "has "));
}

TEST(ObjectProperties, NullsAreLoggedAndChangeNothingAndMissingPartsAreAssertions) {
    testing::LogCapture logged;
    auto object = create<SQLObject>();
    object->setProperty("key", "old");
    const char* null = nullptr;
    object->setProperty("key", std::nullopt);
    object->setProperty("key", nullptr);
    object->setProperty("key", null);
    object->setProperty("key", OptionalText());
    object->setPropertyValue(nullptr, "key");
    object->setUndoableProperty("key", null);
    const std::string nilValue = "attempted to set nil value for property: ";
    EXPECT_EQ(logged.lines(), Events(6, nilValue + "key"));
    object->setPropertyValue("new", std::nullopt);
    object->setProperty(nullptr, "new");
    object->setProperty(null, nullptr);
    object->removeUndoableProperty(nullptr);
    object->setComment(std::nullopt);
    object->setLabel(create<SQLObjectLabel>());
    const char* nilKey = "attempted to set nil key for property";
    const Events lines = logged.lines();
    EXPECT_THAT(Events(lines.begin() + 6, lines.end()),
                ElementsAre(nilKey, nilKey, nilKey, nilValue + "objectComment", nilValue + "labelName"));
    EXPECT_FALSE(object->hasProperty("labelName"));
    EXPECT_TRUE(object->hasProperty("labelColor"));
    EXPECT_EQ(object->getProperty("key"), "old");

    struct TooEarly : SQLObject {
        explicit TooEarly(Creation creation) : SQLObject(creation) {
            EXPECT_EQ(getProperty("key"), "");
            setProperty("key", "value");
        }
    };
    try {
        static_cast<void>(create<TooEarly>());
        FAIL();
    } catch (const AssertionFailure& failure) {
        EXPECT_EQ(failure.reason(), "Properties should not be nil");
    }
    EXPECT_THROW(QVMutableNotifyingPropertyDictionary(nullptr), AssertionFailure);
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
    EXPECT_EQ(map.begin()->value.text(), "again");
    EXPECT_EQ(std::prev(map.end())->key.view(), "0");
    for (int i = 1; i < 59; ++i) map.remove(std::to_string(i));
    EXPECT_EQ(map.find("0")->text(), "last");
    EXPECT_EQ(map.size(), 1u);
}

class Hooked : public SQLObject {
public:
    using SQLObject::SQLObject;
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
    object->setUid("U");
    EXPECT_THAT(std::exchange(object->events, {}),
                ElementsAre(MatchesRegex("hook uid [0-9A-F-]{36} U, reads [0-9A-F-]{36}"), "hooked uid U"));
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
    auto undone = [&](const char* key) {
        EXPECT_TRUE(undo->canUndo());
        undo->undo();
        return object->hasProperty(key) ? object->getProperty(key) : "absent";
    };
    object->setProperty("other", "1");
    EXPECT_FALSE(undo->canUndo());
    object->setProperty("hidden", "1");
    object->setProperty("hidden", "0");
    EXPECT_EQ(undone("hidden"), "1");
    EXPECT_EQ(undone("hidden"), "absent");
    undo->redo();
    EXPECT_EQ(object->getProperty("hidden"), "1");
    undo->removeAllActions();

    object->setUndoableProperty("key", "a");
    object->setUndoableProperty("key", "b");
    object->removeUndoableProperty("key");
    for (const char* value : {"b", "a", "absent"}) EXPECT_EQ(undone("key"), value);
    EXPECT_FALSE(undo->canUndo());

    object->setName("orders");
    EXPECT_EQ(undo->undoActionName(), "set object name");
    undo->undo();
    EXPECT_EQ(object->name(), std::nullopt);
}

TEST(ObjectUndo, GoesThroughTheHolderIfAtAll) {
    struct WithoutUndo : SQLObject {
        using SQLObject::SQLObject;
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

TEST(ObjectLabel, LeavesItsTextsInThePropertiesAndIsCopied) {
    auto undo = std::make_shared<StandardUndoManager>();
    auto object = create<SQLObject>();
    auto label = SQLObjectLabel::labelWithName("urgent", Color::sRGB(1, 0, 0));
    object->setUndoManager(undo);
    object->setLabel(label);
    EXPECT_EQ(undo->undoActionName(), "set label");
    EXPECT_EQ(object->getProperty("labelName") + object->getProperty("labelColor") + object->getProperty("labelUid"),
              "urgent{1,0,0,1,sRGBColorSpace}" + label->uid());
    EXPECT_NE(copyOf(*object)->label(), label);
    EXPECT_EQ(copyOf(*object)->label()->uid(), label->uid());
    undo->undo();
    for (const char* key : {"labelName", "labelColor", "labelUid"}) EXPECT_FALSE(object->hasProperty(key)) << key;
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
}

TEST(ObjectReading, ValuesOfTheWrongKindDoNoHarm) {
    testing::LogCapture logged;
    auto object = create<SQLObjectPeer>();
    auto point = SQLPoint::pointWithPoint({3, 4});
    const std::pair<const char*, LoadedValue> elements[] = {
        {"labelIndex", {"12 of 13"}}, {"location", {"", point.get()}}, {"size", {"", point.get()}}, {"zOrder", {"5"}}};
    for (const auto& [name, value] : elements) object->classInfo().setterFor(name)->apply(*object, value);
    object->setSafePropertyValue({"9"}, "location");
    object->setSafePropertyValue({"", point.get()}, "size");
    object->setSafePropertyValue({"", point.get()}, "name");
    EXPECT_EQ(object->labelIndex(), 12);
    EXPECT_EQ(object->frame(), (Rect{{3, 4}, {0, 0}}));
    EXPECT_EQ(object->getProperty("zorder"), "5") << "detached, the stacking order only waits";
    EXPECT_EQ(object->zOrder(), 0);
    EXPECT_EQ(object->name(), std::nullopt);
    SQLSize().setSafePropertyValue({"7"}, "x");
    EXPECT_THAT(logged.lines(), IsEmpty());
    SQLValue().setSafePropertyValue({"1"}, "z");
    EXPECT_THAT(logged.lines(), ElementsAre("SQLValue setSafePropertyValue called with key z"));
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
    EXPECT_EQ(object->json(), R"({"ClassType":"SQLObject"})");
    EXPECT_THAT(object->description(), MatchesRegex("<SQLObject: 0x[0-9a-f]+> \\(null\\)"));
}

TEST(ObjectElements, PlacesHaveTwoFractionDigits) {
    struct Third : SQLObject {
        using SQLObject::SQLObject;
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

TEST(ObjectCopy, NamesAreNotUnquotedOnceMore) {
    auto component = create<SQLTableComponent>();
    EXPECT_EQ(copyOf(*component)->name(), std::nullopt);
    component->setName(R"("a\"b")");
    EXPECT_EQ(component->getName(), R"(a"b)");
    EXPECT_EQ(copyOf(*component)->getName(), R"(a"b)");
}

TEST(SchemaNames, SplitAtUnquotedDots) {
    const struct {
        const char *name, *base, *schema, *trimmed;
    } cases[] = {
        {"", "", "", ""},
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
    };
    for (const auto& [name, base, schema, trimmed] : cases) {
        EXPECT_EQ(SQLObjectPeer::splitNameBySchema(name), (NameParts{base, schema})) << name;
        EXPECT_EQ(SQLObjectPeer::trimName(name), trimmed) << name;
    }
}

TEST(Iterator, EndsWithNullAndALogLine) {
    testing::LogCapture logged;
    auto cursor = SQLIterator::iteratorForArray({create<SQLObject>()});
    EXPECT_NE(cursor.next(), nullptr);
    EXPECT_FALSE(cursor.hasNext());
    EXPECT_EQ(cursor.next(), nullptr);
    EXPECT_THAT(logged.lines(), ElementsAre("SQLIterator beyond array"));
}

}  // namespace
}  // namespace vellicor
