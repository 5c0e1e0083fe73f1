// tests/util/status_log_test.cpp — events, their warnings and observers, and the progress counter.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/log_capture.h"
#include "vellicor/platform/exception.h"
#include "vellicor/util/progress_watcher.h"
#include "vellicor/util/status_log.h"

namespace vellicor {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;
using ::testing::StartsWith;

/// Counts what it hears, and may leave or let another one go while it is told.
struct Listener : QVStatusLogObserver {
    void eventListChanged(QVStatusLog& log) override {
        ++count;
        if (leaving) log.removeObserver(leaving);
    }
    int count = 0;
    std::shared_ptr<QVStatusLogObserver> leaving;
};

TEST(StatusLog, ObserversHearOfEveryChangeOnce) {
    const auto log = std::make_shared<QVStatusLog>();
    const auto first = std::make_shared<Listener>(), second = std::make_shared<Listener>();
    auto onlyHere = std::make_shared<Listener>();
    const std::weak_ptr<Listener> held = onlyHere;
    for (const auto& listener : {first, onlyHere, second}) log->addObserver(listener);
    onlyHere.reset();
    const auto a = QVStatusEvent::initWithSummary("a", "1");
    for (const auto& event : {a, QVStatusEvent::initWithSummary("b", std::nullopt), a}) log->addEvent(event);
    EXPECT_EQ(log->allEventsAsString(), "a 1\nb (null)\na 1\n");
    log->removeEvent(log->events().front());
    EXPECT_EQ(log->allEventsAsString(), "b (null)\n") << "every occurrence goes";
    log->removeAllEvents();
    EXPECT_THAT(log->events(), IsEmpty());
    EXPECT_EQ(first->count, 5);
    ASSERT_FALSE(held.expired()) << "the log owns its observers";
    EXPECT_EQ(held.lock()->count, 5);
    log->removeObserver(held.lock());
    EXPECT_TRUE(held.expired());
    first->leaving = first;
    log->notifyObservers();
    log->notifyObservers();
    EXPECT_EQ(first->count, 6);
    EXPECT_EQ(second->count, 7);
    first->leaving = nullptr;
}

TEST(StatusEvent, ItsLogReachesWarningsOnEveryLevel) {
    const auto log = std::make_shared<QVStatusLog>();
    const auto listener = std::make_shared<Listener>();
    log->addObserver(listener);
    const auto event = QVStatusEvent::initWithSummary("export", "");
    const auto warning = QVStatusEvent::statusEvent(1), inner = QVStatusEvent::statusEvent(2),
               late = QVStatusEvent::statusEvent(3);
    warning->addWarning(inner);
    event->addWarning(warning);
    log->addEvent(event);
    inner->addWarning(late);
    for (const auto& each : {warning, inner, late}) EXPECT_EQ(each->parentLog(), log);
    EXPECT_EQ(listener->count, 1) << "a warning is no change of the list";
    EXPECT_EQ(log->allEventsAsString(), "export \n");
}

TEST(StatusEvent, CirclesAndLongChainsOfWarningsEnd) {
    const auto log = std::make_shared<QVStatusLog>();
    const auto event = QVStatusEvent::statusEvent(1), warning = QVStatusEvent::statusEvent(2);
    event->addWarning(warning);
    warning->addWarning(event);
    warning->addWarning(warning);
    log->addEvent(event);
    EXPECT_EQ(warning->parentLog(), log);
    for (const auto& each : {event, warning}) each->setWarningList({});

    auto chain = QVStatusEvent::statusEvent(0);
    for (int i = 0; i < 100'000; ++i) {
        auto above = QVStatusEvent::statusEvent(i);
        above->setWarningList({chain});
        chain = above;
    }
    chain->setParentLog(log);
    EXPECT_EQ(chain->warningList().front()->parentLog(), log);
}

struct Measured {
    std::string stringValue() const { return "3 m"; }
};

TEST(StatusEvent, AListOfProblemsBecomesWarnings) {
    const auto event = QVStatusEvent::statusEvent(0);
    event->addWarningList(
        {"text", SQLException("name", "reason"), 42, 0.5, true, Measured{}, Value(Value::List{}), Value()});
    std::vector<std::string> summaries;
    for (const auto& warning : event->warningList()) {
        summaries.push_back(warning->summary().value_or("null"));
        EXPECT_EQ(warning->status(), 5);
        EXPECT_TRUE(warning->isWarning());
    }
    EXPECT_THAT(summaries, ElementsAre("text", "reason", "42", "0.5", "1", "3 m", "", ""));
}

TEST(StatusEvent, ACopyStandsAlone) {
    const auto parent = QVStatusEvent::statusEvent(0), event = QVStatusEvent::initWithSummary("s", "d"),
               warning = QVStatusEvent::statusEvent(1);
    parent->addWarning(event);
    event->addWarning(warning);
    event->setStatus(3);
    event->setDate(QVStatusEvent::Date());
    event->setLogFileText("all");
    event->setOutputFileURL("/out.sql");
    event->setTargetObjectUid("uid");

    const auto copy = event->copyWithZone();
    EXPECT_EQ(*copy->summary() + *copy->detail() + *copy->logFileText(), "sdall");
    EXPECT_EQ(copy->outputFileURL(), "/out.sql");
    EXPECT_EQ(copy->date(), QVStatusEvent::Date());
    EXPECT_THAT(copy->warningList(), ElementsAre(warning));
    EXPECT_EQ(warning->parent(), event) << "the same warning, where it was";
    EXPECT_EQ(copy->parent(), nullptr);
    EXPECT_EQ(copy->status(), 0);
    EXPECT_EQ(copy->targetObjectUid(), std::nullopt);
}

struct Window : QVLogViewController {
    void showLogWindow(QVStatusEvent& event) override { shown = &event; }
    QVStatusEvent* shown = nullptr;
};

TEST(StatusEvent, ShowsItsLogAndItsFileWhileSomebodyCan) {
    std::vector<std::string> shown;
    const auto event = QVStatusEvent::initWithSummary("s", std::nullopt);
    auto previous =
        QVStatusEvent::setFileViewer([&](const std::filesystem::path& file) { shown.push_back(file.string()); });
    event->revealOutputFile();
    event->setOutputFileURL("/out.sql");
    event->revealOutputFile();
    EXPECT_THAT(shown, ElementsAre("/out.sql"));
    QVStatusEvent::setFileViewer(std::move(previous));
    const testing::LogCapture log;
    event->revealOutputFile();
    EXPECT_THAT(log.lines(), ElementsAre("output file: /out.sql"));

    auto window = std::make_shared<Window>();
    event->setLogViewController(window);
    event->copyWithZone()->performInfoButtonAction();
    EXPECT_EQ(window->shown, event.get()) << "a copy shows the log of the event it was made of";
    const std::weak_ptr<QVStatusEvent> shownByCopy = [&] {
        const auto original = QVStatusEvent::statusEvent(0);
        original->setLogViewController(window);
        event->setInfoButtonTarget(nullptr);
        event->setInfoButtonObject(original->copyWithZone()->infoButtonObject());
        return original;
    }();
    EXPECT_FALSE(shownByCopy.expired()) << "another event is owned";
    event->performInfoButtonAction();
    event->setLogViewController(window);
    EXPECT_TRUE(shownByCopy.expired());
    window->shown = nullptr;
    auto& kept = *window;
    window.reset();
    event->performInfoButtonAction();
    EXPECT_EQ(kept.shown, event.get()) << "the window is owned, the event itself is not: it goes with its last holder";
    const std::weak_ptr<QVStatusEvent> itself = [&] {
        const auto alone = QVStatusEvent::statusEvent(0);
        alone->setLogViewController(std::make_shared<Window>());
        return alone;
    }();
    EXPECT_TRUE(itself.expired());
    EXPECT_THAT(event->description(), StartsWith("<QVStatusEvent: 0x"));
    EXPECT_THAT(event->description(), EndsWith("> - summary:'s' detail:'(null)'"));
}

TEST(ProgressWatcher, CountsInWholeNumbers) {
    ProgressWatcher progress;
    progress.incrementPosition();
    EXPECT_EQ(progress.getPosition(), 0);
    progress.setCount(10.9);
    progress.setPosition(-1.9);
    progress.setIncrement(2.5);
    progress.incrementPosition();
    EXPECT_EQ(progress.getPosition(), 1);
    progress.setPosition(1e20);
    progress.incrementPosition();
    EXPECT_EQ(progress.getPosition(), 2147483647);
}

}  // namespace
}  // namespace vellicor
