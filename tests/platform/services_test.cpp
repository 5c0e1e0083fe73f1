// tests/platform/services_test.cpp — log, preferences, notifications, undo, observing, threads and small values.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <future>
#include <limits>
#include <set>
#include <thread>

#include "tests/support/decimal_comma.h"
#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "tests/support/temp_folder.h"
#include "vellicor/platform/color.h"
#include "vellicor/platform/font.h"
#include "vellicor/platform/known_preferences.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/main_thread.h"
#include "vellicor/platform/notifications.h"
#include "vellicor/platform/numbers.h"
#include "vellicor/platform/observing.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/property_list.h"
#include "vellicor/platform/regular_expression.h"
#include "vellicor/platform/undo.h"
#include "vellicor/platform/uuid.h"

namespace vellicor {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST(Log, GoesToTheNewestSinkAndByDefaultToStderr) {
    testing::LogCapture outer;
    {
        testing::LogCapture inner;
        log("one\ntwo");
        EXPECT_THAT(inner.lines(), ElementsAre("one\ntwo"));
    }
    log("");
    EXPECT_THAT(outer.lines(), ElementsAre(""));
    LogSink captured = setLogSink(nullptr);
    ::testing::internal::CaptureStderr();
    log("to stderr");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "to stderr\n");
    EXPECT_FALSE(setLogSink(std::move(captured)));
}

TEST(Preferences, ReadsConvertBetweenKinds) {
    const std::optional<std::string> none;
    const std::tuple<Value, bool, std::int64_t, std::optional<std::string>> cases[] = {
        {Value::boolean(true), true, 1, "1"},     {Value::boolean(false), false, 0, "0"},
        {Value::integer(-7), true, -7, "-7"},     {Value::real(-2.9), true, -2, "-2.9"},
        {Value::real(0.2), true, 0, "0.2"},       {Value::real(1e300), true, INT64_MAX, "1e+300"},
        {Value(" 012x"), true, 12, " 012x"},      {Value("YES"), true, 0, "YES"},
        {Value("no"), false, 0, "no"},            {Value(Value::List{Value("1")}), false, 0, none},
        {Value(), false, 0, none},
    };
    Preferences preferences;
    for (const auto& [stored, flag, integer, text] : cases) {
        preferences.setObject(stored, "k");
        EXPECT_EQ(preferences.boolForKey("k"), flag);
        EXPECT_EQ(preferences.integerForKey("k"), integer);
        EXPECT_EQ(preferences.stringForKey("k"), text);
        EXPECT_EQ(preferences.objectForKey("k"), stored.isNull() ? std::nullopt : std::optional(stored));
    }
}

TEST(Preferences, EveryChangeIsAnnouncedAfterItHappened) {
    Preferences preferences;
    std::vector<std::int64_t> seen;
    const auto heard = NotificationCenter::observe(notifications::preferencesChanged, &preferences, [&](auto, auto) {
        seen.push_back(preferences.integerForKey("k"));
        if (seen.size() == 1) preferences.setObject(Value::integer(2), "k");
    });
    preferences.setObject(Value::integer(1), "k");
    preferences.removeObject("k");
    EXPECT_THAT(seen, ElementsAre(1, 2, 0));
    testing::ScopedPreference other("some key");  // the shared store is another object
    EXPECT_EQ(seen.size(), 3u);
}

TEST(Preferences, AFileBehindTheStoreFollowsEveryChange) {
    testing::TempFolder folder;
    std::filesystem::path file = folder.path() / "preferences.plist";
    std::string error;
    Preferences store;
    store.setObject(Value("before"), "early");
    store.setBackingFile(file);
    EXPECT_FALSE(std::filesystem::exists(file));
    store.setObject(Value::integer(5), "number");
    store.setBool(true, "flag");
    store.removeObject("number");

    Preferences copy;
    copy.setObject(Value("kept"), "own");
    ASSERT_TRUE(copy.readFile(file, error)) << error;
    EXPECT_FALSE(copy.readFile(folder.path() / "missing", error));
    EXPECT_FALSE(copy.readFile(folder.write("bad", "not a list"), error));
    EXPECT_FALSE(copy.readFile(folder.write("list", "<plist><array><string>x</string></array></plist>"), error));
    EXPECT_THAT(error, HasSubstr("dictionary"));
    EXPECT_THAT(copy.keys(), ElementsAre("early", "flag", "own"));
    EXPECT_EQ(copy.objectForKey("flag"), Value::boolean(true));

    testing::LogCapture log;
    store.setBackingFile(folder.path() / "no folder/file");
    store.setBool(false, "flag");
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("no folder/file: No such file or directory")));
}

TEST(Preferences, ThreadsMayReadAndWriteTogether) {
    Preferences preferences;
    testing::TempFolder folder;
    preferences.setBackingFile(folder.path() / "p");
    std::vector<std::thread> threads;
    for (const std::string key : {"key0", "key1", "key2"})
        threads.emplace_back([&, key] {
            for (int i = 0; i < 20; ++i) {
                preferences.setObject(Value::integer(i), key);
                static_cast<void>(preferences.stringForKey("key0"));
            }
        });
    for (auto& thread : threads) thread.join();
    Preferences read;
    std::string error;
    ASSERT_TRUE(read.readFile(folder.path() / "p", error)) << error;
    for (const char* key : {"key0", "key1", "key2"}) EXPECT_EQ(read.integerForKey(key), 19);
}

TEST(KnownPreferences, HoldEveryKeyOnceAndReadWhatPeopleWrite) {
    const std::string header = testing::TempFolder::read(VELLICOR_SOURCE_DIR "/vellicor/platform/preference_keys.h");
    std::multiset<std::string> declared, listed;
    for (const auto& match : RegularExpression("= \"([^\"]+)\";").allMatches(header))
        declared.emplace(match.group(1, header));
    for (const KnownPreference& preference : knownPreferences()) {
        listed.emplace(preference.key);
        EXPECT_FALSE(preference.meaning.empty()) << preference.key;
    }
    EXPECT_GT(declared.size(), 30u);
    EXPECT_EQ(declared, listed);

    using Type = PreferenceType;
    const std::tuple<Type, const char*, std::optional<Value>> cases[] = {
        {Type::Flag, "true", Value::boolean(true)},   {Type::Flag, "YES", Value::boolean(true)},
        {Type::Flag, "On", Value::boolean(true)},     {Type::Flag, "1", Value::boolean(true)},
        {Type::Flag, "off", Value::boolean(false)},   {Type::Flag, "No", Value::boolean(false)},
        {Type::Flag, "2", std::nullopt},              {Type::Flag, " true", std::nullopt},
        {Type::Flag, "", std::nullopt},               {Type::Integer, "-12", Value::integer(-12)},
        {Type::Integer, "", std::nullopt},            {Type::Integer, "1.5", std::nullopt},
        {Type::Integer, "12 ", std::nullopt},         {Type::Integer, "99999999999999999999", std::nullopt},
        {Type::Text, "", Value("")},
    };
    for (const auto& [type, text, expected] : cases) EXPECT_EQ(preferenceValue(type, text), expected) << text;
}

TEST(Notifications, ReachMatchingObserversInOrderOfRegistration) {
    std::string calls;
    const int a = 0, b = 0;
    auto add = [&](const void* object, char mark) {
        return NotificationCenter::observe("test", object, [&, mark](std::string_view, const void* about) {
            calls += mark;
            calls += about == &a ? "a " : about == &b ? "b " : "- ";
        });
    };
    Observation third, fourth;
    const Observation first = add(nullptr, '1'), second = add(&a, '2');
    Observation leaving = NotificationCenter::observe("test", &b, [&](auto, auto) {
        third.end();            // not called any more, although it is next
        fourth = add(&b, '4');  // called from the next post on
    });
    third = add(nullptr, '3');
    NotificationCenter::post("test", &a);
    NotificationCenter::post("other", &a);
    EXPECT_EQ(calls, "1a 2a 3a ");
    NotificationCenter::post("test", &b);
    EXPECT_EQ(calls, "1a 2a 3a 1b ");
    calls.clear();
    leaving.end();
    NotificationCenter::post("test", &b);
    NotificationCenter::post("test");
    fourth = {};
    NotificationCenter::post("test", &b);
    EXPECT_EQ(calls, "1b 4b 1- 1b ");
}

/// A value with an undoable setter, as model objects have them.
struct Counter : std::enable_shared_from_this<Counter> {
    explicit Counter(UndoManager& manager) : manager(manager) {}
    void set(int next, std::string_view action = {}) {
        manager.prepareWithInvocationTarget(weak_from_this()).record([this, old = value] { set(old, "inverse"); });
        if (!action.empty()) manager.setActionName(action);
        value = next;
        history.push_back(next);
    }
    UndoManager& manager;
    int value = 0;
    std::vector<int> history;
};

class Undo : public ::testing::Test {
protected:
    StandardUndoManager manager;
    std::shared_ptr<Counter> counter = std::make_shared<Counter>(manager);
};

TEST_F(Undo, WalksBackAndForthUnderTheNameOfTheGroup) {
    manager.setActionName("nothing to name");
    counter->set(1, "first");
    counter->set(2, "second");
    manager.undo();
    EXPECT_EQ(counter->value, 1);
    EXPECT_EQ(manager.redoActionName(), "second");
    manager.setActionName("too late");
    EXPECT_EQ(manager.undoActionName(), "first");
    manager.redo();
    EXPECT_EQ(counter->value, 2);
    EXPECT_FALSE(manager.canRedo());
    manager.undo();
    counter->set(9);
    EXPECT_FALSE(manager.canRedo());
    EXPECT_EQ(manager.undoActionName(), "");
}

TEST_F(Undo, AGroupRunsInReverseAsOne) {
    manager.beginUndoGrouping();
    counter->set(1, "one");
    manager.beginUndoGrouping();
    counter->set(2, "two");
    manager.endUndoGrouping();
    counter->set(3);
    EXPECT_EQ(manager.undoActionName(), "two");
    manager.endUndoGrouping();
    manager.beginUndoGrouping();
    manager.endUndoGrouping();
    counter->history.clear();
    manager.undo();
    EXPECT_THAT(counter->history, ElementsAre(2, 1, 0));
    EXPECT_FALSE(manager.canUndo());
    EXPECT_EQ(manager.redoActionName(), "two");
    manager.redo();
    EXPECT_EQ(counter->value, 3);
    // An open group is closed by undo; its own end then changes nothing.
    manager.beginUndoGrouping();
    counter->set(4);
    manager.undo();
    EXPECT_EQ(counter->value, 3);
    manager.endUndoGrouping();
    manager.undo();
    EXPECT_EQ(counter->value, 0);
}

TEST_F(Undo, TargetsAreNotKeptAliveAndCanBeForgotten) {
    auto other = std::make_shared<Counter>(manager);
    manager.beginUndoGrouping();
    counter->set(1);
    other->set(1);
    manager.endUndoGrouping();
    manager.removeAllActionsWithTarget(other);
    manager.undo();
    EXPECT_EQ(counter->value, 0);
    EXPECT_EQ(other->value, 1);
    manager.removeAllActionsWithTarget(counter);
    EXPECT_FALSE(manager.canUndo() || manager.canRedo());
    counter->set(5);
    counter.reset();
    manager.undo();
    EXPECT_FALSE(manager.canRedo());
}

TEST_F(Undo, AFailingActionLeavesTheManagerUsable) {
    manager.registerUndo(counter, [] { throw std::runtime_error("failed"); });
    EXPECT_THROW(manager.undo(), std::runtime_error);
    counter->set(1);
    manager.undo();
    EXPECT_EQ(counter->value, 0);
    EXPECT_TRUE(manager.canRedo());
}

TEST(Observing, AnObserverMayLeaveWhileOthersAreTold) {
    struct Observer : KeyObserver {
        int calls = 0;
        std::function<void()> act = [] {};
        void willChangeValue(const void*, std::string_view) override { ++calls; }
        void didChangeValue(const void*, std::string_view) override {
            calls += 10;
            act();
        }
    } first, second;
    KeyObserverList list;
    for (const auto& [observer, key] : {std::pair(&first, "k"), {&second, "k"}, {&second, "other"}})
        list.add(*observer, key);
    first.act = [&] { list.remove(second, "k"); };
    list.willChange(this, "k");
    list.didChange(this, "k");
    list.didChange(this, "other");
    EXPECT_EQ(first.calls, 11);
    EXPECT_EQ(second.calls, 11);
}

TEST(Observing, AGuardEndsItsRegistration) {
    struct Observer : KeyObserver {
        int calls = 0;
        std::function<void()> act = [] {};
        void didChangeValue(const void*, std::string_view) override { ++calls, act(); }
    } first;
    auto second = std::make_unique<Observer>();
    auto list = std::make_unique<KeyObserverList>();
    Observation one = list->observe(first, "k"), two = list->observe(*second, "k");
    first.act = [&] {
        two.end();
        second.reset();  // next in the walk that is under way
    };
    list->didChange(this, "k");
    EXPECT_EQ(first.calls, 1);
    first.act = [] {};
    Observation moved = std::move(one);
    one = list->observe(first, "k");
    list->didChange(this, "k");
    EXPECT_EQ(first.calls, 3);
    moved = {};
    list->didChange(this, "k");
    EXPECT_EQ(first.calls, 4);
    first.act = [&] { list.reset(); };  // the subject goes while it tells
    list->didChange(this, "k");
    EXPECT_EQ(first.calls, 5);
}

TEST(MainThread, WorkIsHandedToItAndWaitedFor) {
    adoptMainThread();
    bool ran = false;
    std::thread([&] {
        EXPECT_FALSE(isMainThread());
        performOnMainThreadAndWait([&] { ran = true; });  // without a runner: directly
    }).join();
    EXPECT_TRUE(ran);

    std::promise<std::function<void()>> queued;
    setMainThreadRunner([&](const std::function<void()>& work) { queued.set_value(work); });
    performOnMainThreadAndWait([&] { ran = false; });  // already there: not through the runner
    EXPECT_FALSE(ran);
    const auto failing = [] {
        EXPECT_TRUE(isMainThread());
        throw std::runtime_error("from there");
    };
    std::thread worker([&] { EXPECT_THROW(performOnMainThreadAndWait(failing), std::runtime_error); });
    queued.get_future().get()();
    worker.join();
    setMainThreadRunner([](const std::function<void()>&) {});
    std::thread([] { EXPECT_THROW(performOnMainThreadAndWait([] {}), std::future_error); }).join();
    setMainThreadRunner(nullptr);
}

TEST(Uuid, IsVersionFourUpperCaseAndOfThisProcessOnly) {
    RegularExpression form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    std::set<std::string> seen;
    for (int i = 0; i < 1000; ++i) ASSERT_TRUE(form.firstMatchCovers(*seen.insert(newUuidText()).first));
    EXPECT_EQ(seen.size(), 1000u);

    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) _exit(write(ends[1], newUuidText().data(), 36) == 36 ? 0 : 1);
    char text[36];
    ASSERT_EQ(read(ends[0], text, sizeof text), 36);
    EXPECT_NE(newUuidText(), std::string(text, sizeof text));
    waitpid(child, nullptr, 0);
    for (int end : ends) close(end);
}

TEST(Color, TheTextFormReadsAsFarAsItGoesAndIsWrittenInSRGB) {
    auto device = [](double r, double g, double b) { return Color{r, g, b, 1, ColorSpace::DeviceRGB}; };
    const std::pair<const char*, Color> cases[] = {
        {" { 1 , 0.5\n,\t.25, 7.5e-1 , srgbcolorspace", Color::sRGB(1, 0.5, 0.25, 0.75)},
        {"sRGBColorSpace", Color::sRGB(0, 0, 0)}, {"{1,0,0,1,sRGB}", device(1, 0, 0)}, {"{1,0.5}", device(1, 0.5, 0)},
        {"{1,,0.5}", device(1, 0, 0.5)},          {"1 0.5 0.25", device(1, 0.5, 0.25)}, {"{0x1", device(0, 0, 0)},
        {"{-1,+2,5.,1e", device(-1, 2, 5)},       {"", device(0, 0, 0)},
    };
    for (const auto& [text, color] : cases) EXPECT_EQ(Color::colorWithString(text), color) << text;
    EXPECT_EQ(Color::colorWithString(std::nullopt), Color::white());
    EXPECT_EQ(Color::colorWithString("0.1").red, static_cast<double>(0.1f));
    EXPECT_EQ(Color::white().string(), "{1,1,1,1,sRGBColorSpace}");
    EXPECT_EQ(Color::sRGB(0.117647, 1.0 / 3, 0.00001, 0.8).string(), "{0.117647,0.333333,1e-05,0.8,sRGBColorSpace}");
    EXPECT_EQ(Color::colorWithString("{0.1,0.59,0.27}").string(), "{0.1,0.59,0.27,1,sRGBColorSpace}");
}

TEST(Color, TheTextFormIsTheSameWhereNumbersHaveAComma) {
    const testing::DecimalComma comma;
    if (!comma.works()) GTEST_SKIP() << "no locale with a decimal comma";
    const std::string form = "{0.5,0.25,1,0.125,sRGBColorSpace}";
    EXPECT_EQ(Color::colorWithString(form).string(), form);
    EXPECT_EQ(Color::colorWithString("0,5 0,25").string(), "{0,5,0,25,sRGBColorSpace}") << "a comma only separates";
    EXPECT_EQ(doubleValue("0.5,7"), 0.5);
    EXPECT_EQ(fixedText(12.5, 6), "12.500000");
    std::string error;
    const std::string list = propertyListText(Value::real(0.5), error).value_or(error);
    EXPECT_THAT(list, HasSubstr("<real>0.5"));
    EXPECT_EQ(valueFromPropertyList(list, error), Value::real(0.5));
}

TEST(Fonts, EveryNamedFontWithASizeExistsAndHasABoldVariant) {
    FontManager& fonts = FontManager::shared();
    EXPECT_FALSE(fonts.fontWithName("", 12));
    EXPECT_FALSE(fonts.fontWithName("Arial", 0));
    const std::pair<const char*, const char*> cases[] = {
        {"Helvetica", "Helvetica-Bold"}, {"Helvetica-Oblique", "Helvetica-BoldOblique"}, {"A-B-Regular", "A-B-Bold"},
        {"Times-Italic", "Times-BoldItalic"}, {"X-Condensed", "X-Condensed-Bold"},
    };
    for (const auto& [plain, bold] : cases) {
        EXPECT_EQ(fonts.convertedToBold(*fonts.fontWithName(plain, 9.5)), (Font{bold, 9.5, true}));
        EXPECT_EQ(fonts.fontWithName(bold, 9.5), (Font{bold, 9.5, true}));  // the trait survives storing name and size
    }
}

}  // namespace
}  // namespace vellicor
