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
#include "vellicor/platform/interned.h"
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
    struct Case {
        Value stored;
        bool flag;
        std::int64_t integer;
        std::optional<std::string> text;
    };
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    Preferences preferences;
    EXPECT_FALSE(preferences.objectForKey("k"));
    for (const Case& c : {Case{Value(), false, 0, std::nullopt},
                          {Value::boolean(true), true, 1, "1"},
                          {Value::boolean(false), false, 0, "0"},
                          {Value::integer(-7), true, -7, "-7"},
                          {Value::real(-2.9), true, -2, "-2.9"},
                          {Value::real(1e300), true, kMost, "1e+300"},
                          {Value::real(0.2), true, 0, "0.2"},
                          {Value(" 012x"), true, 12, " 012x"},
                          {Value("YES"), true, 0, "YES"},
                          {Value("no"), false, 0, "no"},
                          {Value(""), false, 0, ""},
                          {Value(Value::List{Value("1")}), false, 0, std::nullopt},
                          {Value(Value::Map{{"a", Value("1")}}), false, 0, std::nullopt}}) {
        preferences.setObject(c.stored, "k");
        EXPECT_EQ(preferences.boolForKey("k"), c.flag);
        EXPECT_EQ(preferences.integerForKey("k"), c.integer);
        EXPECT_EQ(preferences.stringForKey("k"), c.text);
        EXPECT_EQ(preferences.objectForKey("k"), c.stored.isNull() ? std::nullopt : std::optional(c.stored));
    }
    preferences.setBool(true, "a");
    EXPECT_THAT(preferences.keys(), ElementsAre("a", "k"));
    preferences.removeObject("k");
    preferences.removeObject("never there");
    EXPECT_THAT(preferences.keys(), ElementsAre("a"));
}

TEST(Preferences, EveryChangeIsAnnouncedAfterItHappened) {
    Preferences preferences;
    std::vector<std::int64_t> seen;
    auto token = NotificationCenter::addObserver(notifications::preferencesChanged, &preferences, [&](auto, auto) {
        seen.push_back(preferences.integerForKey("k"));
        if (seen.size() == 1) preferences.setObject(Value::integer(2), "k");
    });
    preferences.setObject(Value::integer(1), "k");
    preferences.removeObject("k");
    EXPECT_THAT(seen, ElementsAre(1, 2, 0));
    testing::ScopedPreference other("some key");  // the shared store is another object
    EXPECT_EQ(seen.size(), 3u);
    NotificationCenter::removeObserver(token);
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
    EXPECT_THAT(copy.keys(), ElementsAre("early", "flag", "own"));
    EXPECT_EQ(copy.objectForKey("flag"), Value::boolean(true));

    EXPECT_FALSE(copy.readFile(folder.path() / "missing", error));
    EXPECT_FALSE(copy.readFile(folder.write("bad", "not a list"), error));
    EXPECT_FALSE(copy.readFile(
        folder.write("list", "<plist version=\"1.0\"><array><string>x</string></array></plist>"), error));
    EXPECT_THAT(error, HasSubstr("dictionary"));
    EXPECT_EQ(copy.keys().size(), 3u);

    testing::LogCapture log;
    store.setBackingFile(folder.path() / "no folder/file");
    store.setBool(false, "flag");
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_THAT(log.lines()[0], HasSubstr("no folder/file: No such file or directory"));
    store.setBackingFile({});
    store.setBool(true, "flag");
    EXPECT_EQ(log.lines().size(), 1u);
}

TEST(Preferences, ThreadsMayReadAndWriteTogether) {
    Preferences preferences;
    testing::TempFolder folder;
    preferences.setBackingFile(folder.path() / "p");
    std::vector<std::thread> threads;
    for (int t = 0; t < 3; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 20; ++i) {
                preferences.setObject(Value::integer(i), "key" + std::to_string(t));
                static_cast<void>(preferences.stringForKey("key0"));
            }
        });
    }
    for (auto& thread : threads) thread.join();
    Preferences read;
    std::string error;
    ASSERT_TRUE(read.readFile(folder.path() / "p", error)) << error;
    for (const char* key : {"key0", "key1", "key2"}) EXPECT_EQ(read.integerForKey(key), 19);
}

TEST(Notifications, ReachMatchingObserversInOrderOfRegistration) {
    std::string calls;
    int a = 0;
    int b = 0;
    std::vector<NotificationCenter::Token> tokens;
    NotificationCenter::Token third = 0;
    auto add = [&](const void* object, char mark) {
        return NotificationCenter::addObserver("test", object, [&, mark](std::string_view name, const void* about) {
            EXPECT_EQ(name, "test");
            calls += mark;
            calls += about == &a ? 'a' : about == &b ? 'b' : '-';
        });
    };
    tokens.push_back(add(nullptr, '1'));
    tokens.push_back(add(&a, '2'));
    tokens.push_back(NotificationCenter::addObserver("test", &b, [&](auto, auto) {
        NotificationCenter::removeObserver(third);  // not called any more, although it is next
        tokens.push_back(add(&b, '4'));             // called from the next post on
    }));
    third = add(nullptr, '3');
    NotificationCenter::post("test", &a);
    NotificationCenter::post("other", &a);
    EXPECT_EQ(calls, "1a2a3a");
    calls.clear();
    NotificationCenter::post("test", &b);
    EXPECT_EQ(calls, "1b");
    calls.clear();
    NotificationCenter::removeObserver(tokens[2]);
    NotificationCenter::post("test", &b);
    NotificationCenter::post("test");
    EXPECT_EQ(calls, "1b4b1-");
    for (auto token : tokens) NotificationCenter::removeObserver(token);
    NotificationCenter::post("test", &b);
    EXPECT_EQ(calls, "1b4b1-");
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

TEST(Undo, UndoAndRedoWalkBackAndForthUnderTheNameOfTheGroup) {
    StandardUndoManager manager;
    auto counter = std::make_shared<Counter>(manager);
    manager.undo();
    manager.setActionName("nothing to name");
    counter->set(1, "first");
    counter->set(2, "second");
    counter->set(3);
    EXPECT_EQ(manager.undoActionName(), "");
    manager.undo();
    EXPECT_EQ(counter->value, 2);
    EXPECT_EQ(manager.undoActionName(), "second");
    manager.undo();
    EXPECT_EQ(counter->value, 1);
    EXPECT_EQ(manager.redoActionName(), "second");
    manager.setActionName("too late");
    EXPECT_EQ(manager.undoActionName(), "first");
    manager.redo();
    manager.redo();
    EXPECT_EQ(counter->value, 3);
    EXPECT_FALSE(manager.canRedo());
    manager.undo();
    EXPECT_TRUE(manager.canRedo());
    counter->set(9, "fresh");
    EXPECT_FALSE(manager.canRedo());
    EXPECT_EQ(manager.redoActionName(), "");
    manager.undo();
    EXPECT_EQ(counter->value, 2);
    manager.removeAllActions();
    EXPECT_FALSE(manager.canUndo() || manager.canRedo());
}

TEST(Undo, AGroupRunsInReverseAsOne) {
    StandardUndoManager manager;
    auto counter = std::make_shared<Counter>(manager);
    manager.beginUndoGrouping();
    counter->set(1, "one");
    manager.beginUndoGrouping();
    counter->set(2, "two");
    manager.endUndoGrouping();
    counter->set(3);
    EXPECT_TRUE(manager.canUndo());
    EXPECT_EQ(manager.undoActionName(), "two");
    manager.endUndoGrouping();
    manager.beginUndoGrouping();
    manager.setActionName("empty");
    manager.endUndoGrouping();
    counter->history.clear();
    manager.undo();
    EXPECT_THAT(counter->history, ElementsAre(2, 1, 0));
    EXPECT_FALSE(manager.canUndo());
    EXPECT_EQ(manager.redoActionName(), "two");
    manager.redo();
    EXPECT_EQ(counter->value, 3);
    EXPECT_FALSE(manager.canRedo());
    // An open group is closed by undo; its own end then changes nothing.
    manager.beginUndoGrouping();
    counter->set(4);
    manager.undo();
    EXPECT_EQ(counter->value, 3);
    manager.endUndoGrouping();
    counter->set(5);
    manager.undo();
    manager.undo();
    EXPECT_EQ(counter->value, 0);
}

TEST(Undo, TargetsAreNotKeptAliveAndCanBeForgotten) {
    StandardUndoManager manager;
    auto a = std::make_shared<Counter>(manager);
    auto b = std::make_shared<Counter>(manager);
    manager.beginUndoGrouping();
    a->set(1);
    b->set(1);
    manager.endUndoGrouping();
    b->set(2);
    manager.removeAllActionsWithTarget(b);
    manager.undo();
    EXPECT_EQ(a->value, 0);
    EXPECT_EQ(b->value, 2);
    manager.removeAllActionsWithTarget(a);
    EXPECT_FALSE(manager.canUndo() || manager.canRedo());
    a->set(5);
    std::weak_ptr<Counter> gone = a;
    a.reset();
    EXPECT_TRUE(gone.expired());
    manager.undo();
    EXPECT_FALSE(manager.canRedo());
}

TEST(Undo, AFailingActionLeavesTheManagerUsable) {
    StandardUndoManager manager;
    auto counter = std::make_shared<Counter>(manager);
    manager.registerUndo(counter, [] { throw std::runtime_error("failed"); });
    EXPECT_THROW(manager.undo(), std::runtime_error);
    counter->set(1);
    manager.undo();
    EXPECT_EQ(counter->value, 0);
    EXPECT_TRUE(manager.canRedo());
}

TEST(Undo, ActionNamesAreTranslatedWhereThereIsATranslation) {
    setActionNameLocalizer([](std::string_view name) { return name == "set label" ? "Etikett setzen" : ""; });
    EXPECT_EQ(localizedActionName("set label"), "Etikett setzen");
    EXPECT_EQ(localizedActionName("add schema"), "add schema");
    setActionNameLocalizer(nullptr);
    EXPECT_EQ(localizedActionName("set label"), "set label");
}

TEST(Observing, ObserversHearOfTheirKeysUntilTheyLeave) {
    struct Observer : KeyObserver {
        std::string calls;
        std::function<void()> act;
        void willChangeValue(const void*, std::string_view key) override { calls.append("will ").append(key) += '.'; }
        void didChangeValue(const void* object, std::string_view key) override {
            calls.append(object ? "did " : "null ").append(key) += '.';
            if (act) act();
        }
    } first, second;
    KeyObserverList list;
    list.willChange(this, "k");
    list.remove(first, "k");
    list.add(first, "k");
    list.add(second, "k");
    list.add(second, "other");
    list.willChange(this, "k");
    first.act = [&] { list.remove(second, "k"); };
    list.didChange(this, "k");
    list.didChange(this, "other");
    EXPECT_EQ(first.calls, "will k.did k.");
    EXPECT_EQ(second.calls, "will k.did other.");
    list.remove(first, "other");
    list.didChange(nullptr, "k");
    EXPECT_EQ(first.calls, "will k.did k.null k.");
}

TEST(MainThread, WorkIsHandedToItAndWaitedFor) {
    adoptMainThread();
    EXPECT_TRUE(isMainThread());
    std::thread([] {
        EXPECT_FALSE(isMainThread());
        bool done = false;
        performOnMainThreadAndWait([&] { done = true; });  // without a runner: directly
        EXPECT_TRUE(done);
    }).join();

    std::promise<std::function<void()>> queued;
    setMainThreadRunner([&](const std::function<void()>& work) { queued.set_value(work); });
    bool ran = false;
    performOnMainThreadAndWait([&] { ran = true; });  // already there: not through the runner
    EXPECT_TRUE(ran);
    std::thread worker([] {
        EXPECT_THROW(performOnMainThreadAndWait([] {
                         EXPECT_TRUE(isMainThread());
                         throw std::runtime_error("from there");
                     }),
                     std::runtime_error);
    });
    queued.get_future().get()();
    worker.join();
    setMainThreadRunner([](const std::function<void()>&) {});
    std::thread([] { EXPECT_THROW(performOnMainThreadAndWait([] {}), std::future_error); }).join();
    setMainThreadRunner(nullptr);
}

TEST(Uuid, IsVersionFourUpperCaseAndNeverTheSameTwice) {
    RegularExpression form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    std::set<std::string> seen;
    std::set<std::string> elsewhere;
    std::thread([&] {
        for (int i = 0; i < 1000; ++i) elsewhere.insert(newUuidText());
    }).join();
    for (int i = 0; i < 1000; ++i) seen.insert(newUuidText());
    for (const std::string& text : seen) ASSERT_TRUE(form.firstMatchCovers(text)) << text;
    seen.merge(elsewhere);
    EXPECT_EQ(seen.size(), 2000u);

    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    if (pid_t child = fork(); child == 0) {
        std::string text = newUuidText();
        _exit(write(ends[1], text.data(), text.size()) == 36 ? 0 : 1);
    } else {
        char text[36];
        ASSERT_EQ(read(ends[0], text, sizeof text), 36);
        EXPECT_NE(newUuidText(), std::string(text, sizeof text));
        waitpid(child, nullptr, 0);
    }
    close(ends[0]);
    close(ends[1]);
}

TEST(Color, TheTextFormReadsAsFarAsItGoes) {
    struct Case {
        const char* text;
        Color color;
    };
    auto device = [](double red, double green, double blue, double alpha) {
        return Color{red, green, blue, alpha, ColorSpace::DeviceRGB};
    };
    for (const Case& c : {Case{"{1,0.5,0.25,0.75,sRGBColorSpace}", Color::sRGB(1, 0.5, 0.25, 0.75)},
                          {" { 1 , 0.5\n,\t.25, 7.5e-1 , srgbcolorspace", Color::sRGB(1, 0.5, 0.25, 0.75)},
                          {"1 0.5 0.25", device(1, 0.5, 0.25, 1)},
                          {"{1,0.5}", device(1, 0.5, 0, 1)},
                          {"{1,,0.5,0.25}", device(1, 0, 0.5, 0.25)},
                          {"{-1,+2,5.,1e", device(-1, 2, 5, 1)},
                          {"{0x1", device(0, 0, 0, 1)},
                          {"{1,0,0,1,sRGB}", device(1, 0, 0, 1)},
                          {"sRGBColorSpace", Color::sRGB(0, 0, 0)},
                          {".", device(0, 0, 0, 1)},
                          {"", device(0, 0, 0, 1)}}) {
        EXPECT_EQ(Color::colorWithString(c.text), c.color) << c.text;
    }
    EXPECT_EQ(Color::colorWithString(std::nullopt), Color::white());
    EXPECT_EQ(Color::white().space, ColorSpace::CalibratedRGB);
    EXPECT_EQ(Color::colorWithString("0.1").red, static_cast<double>(0.1f));
}

TEST(Color, IsWrittenInSRGBWithSixDigits) {
    EXPECT_EQ(Color::white().string(), "{1,1,1,1,sRGBColorSpace}");
    EXPECT_EQ(Color::sRGB(0.117647, 1.0 / 3, 0.00001, 0.8).string(), "{0.117647,0.333333,1e-05,0.8,sRGBColorSpace}");
    EXPECT_EQ(Color::colorWithString("{0.1,0.59,0.27}").string(), "{0.1,0.59,0.27,1,sRGBColorSpace}");
    EXPECT_EQ(Color::colorWithString("{1,1,1,1}").convertedToSRGB(), Color::sRGB(1, 1, 1));
}

TEST(Color, TheTextFormIsTheSameWhereNumbersHaveAComma) {
    const testing::DecimalComma comma;
    if (!comma.works()) GTEST_SKIP() << "no locale with a decimal comma";
    const std::string form = "{0.5,0.25,1,0.125,sRGBColorSpace}";
    EXPECT_EQ(Color::sRGB(0.5, 0.25, 1, 0.125).string(), form);
    EXPECT_EQ(Color::colorWithString(form), Color::sRGB(0.5, 0.25, 1, 0.125));
    EXPECT_EQ(Color::colorWithString("0,5 0,25").string(), "{0,5,0,25,sRGBColorSpace}") << "a comma only separates";

    // What colours and preferences are stored in.
    EXPECT_EQ(doubleValue("0.5,7"), 0.5);
    EXPECT_EQ(fixedText(12.5, 6), "12.500000");
    std::string error;
    const std::string list = propertyListText(Value::real(0.5), error).value_or(error);
    EXPECT_THAT(list, HasSubstr("<real>0.5"));
    EXPECT_EQ(valueFromPropertyList(list, error), Value::real(0.5));
}

TEST(Fonts, EveryNamedFontWithASizeExistsAndHasABoldVariant) {
    FontManager& fonts = FontManager::shared();
    EXPECT_EQ(fonts.fontWithName("No Such Font", 11.5), (Font{"No Such Font", 11.5, false}));
    EXPECT_FALSE(fonts.fontWithName("", 12));
    EXPECT_FALSE(fonts.fontWithName("Arial", 0));
    EXPECT_FALSE(fonts.fontWithName("Arial", std::numeric_limits<double>::quiet_NaN()));
    struct Case {
        const char *plain, *bold;
    };
    for (const Case& c : {Case{"Helvetica", "Helvetica-Bold"}, {"Helvetica-Oblique", "Helvetica-BoldOblique"},
                          {"Times-Roman", "Times-Bold"}, {"Times-Italic", "Times-BoldItalic"},
                          {"A-B-Regular", "A-B-Bold"}, {"X-Condensed", "X-Condensed-Bold"}}) {
        Font bold = fonts.convertedToBold(*fonts.fontWithName(c.plain, 9));
        EXPECT_EQ(bold, (Font{c.bold, 9, true}));
        EXPECT_EQ(fonts.convertedToBold(bold), bold);
        EXPECT_EQ(fonts.fontWithName(c.bold, 9), bold);  // the trait survives storing name and size
    }
    EXPECT_TRUE(fonts.fontWithName(fonts.userFont().name, fonts.userFont().size));

    struct NoFonts : FontManager {
        std::optional<Font> fontWithName(const std::string&, double) const override { return std::nullopt; }
    };
    FontManager::setShared(std::make_shared<NoFonts>());
    EXPECT_FALSE(FontManager::shared().fontWithName("Arial", 9));
    FontManager::setShared(nullptr);
    EXPECT_EQ(&FontManager::shared(), &fonts);
}

TEST(InternedText, EqualTextsAreOne) {
    InternedText name("name");
    EXPECT_EQ(name, InternedText(std::string("na") + "me"));
    EXPECT_NE(name, InternedText("Name"));
    EXPECT_EQ(InternedText(), InternedText(""));
    EXPECT_EQ(name.view(), "name");
    std::vector<InternedText> here, there;
    auto fill = [](std::vector<InternedText>& texts) {
        for (int i = 0; i < 3000; ++i) texts.emplace_back("key " + std::to_string(i % 1000));
    };
    std::thread other([&] { fill(there); });
    fill(here);
    other.join();
    EXPECT_EQ(here, there);
    std::set<const std::string*> copies;
    for (InternedText text : here) copies.insert(&text.string());
    EXPECT_EQ(copies.size(), 1000u);
}

}  // namespace
}  // namespace vellicor
