// vellicor/util/status_event.h — one event of a long operation, with the warnings that belong to it.
#pragma once

#include <chrono>
#include <concepts>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "vellicor/platform/text.h"
#include "vellicor/platform/value.h"

namespace vellicor {

class QVStatusEvent;
class QVStatusLog;

/// An item of a list of problems, as text: a text is itself, an exception its reason, a number its text, an object that
/// has a `stringValue` that; everything else is empty.
class StatusProblem {
public:
    StatusProblem(std::string text) : _text(std::move(text)) {}
    StatusProblem(std::string_view text) : _text(text) {}
    StatusProblem(const char* text) : _text(text) {}
    StatusProblem(const std::exception& exception) : _text(exception.what()) {}
    StatusProblem(const Value& value);
    template <std::integral Number>
    StatusProblem(Number number) : StatusProblem(Value::integer(static_cast<std::int64_t>(number))) {}
    template <std::floating_point Number>
    StatusProblem(Number number) : StatusProblem(Value::real(number)) {}
    template <class Object>
    requires requires(const Object& object) {
        { object.stringValue() } -> std::convertible_to<std::string>;
    }
    StatusProblem(const Object& object) : _text(object.stringValue()) {}

    [[nodiscard]] const std::string& text() const { return _text; }

private:
    std::string _text;
};

/// The window that shows logs, as the user interface provides it.
class QVLogViewController {
public:
    virtual ~QVLogViewController() = default;
    virtual void showLogWindow(QVStatusEvent& event) = 0;
};

/// Held by a shared_ptr. Its log and its parent are not owned and read as null once they are gone. What its information
/// button refers to is owned, except the event itself.
class QVStatusEvent : public std::enable_shared_from_this<QVStatusEvent> {
public:
    using Date = std::chrono::system_clock::time_point;
    using Warnings = std::vector<std::shared_ptr<QVStatusEvent>>;
    /// What the information button does with its target and its object.
    using InfoButtonAction = std::function<void(void* target, void* object)>;

    /// The status of a warning that was made from a list of problems.
    static constexpr std::int64_t kProblemListStatus = 5;

    QVStatusEvent() = default;
    ~QVStatusEvent();
    QVStatusEvent(const QVStatusEvent&) = delete;
    QVStatusEvent& operator=(const QVStatusEvent&) = delete;
    static std::shared_ptr<QVStatusEvent> initWithSummary(const OptionalText& summary, const OptionalText& detail);
    static std::shared_ptr<QVStatusEvent> statusEventWithSummary(const OptionalText& summary,
                                                                 const OptionalText& detail) {
        return initWithSummary(summary, detail);
    }
    static std::shared_ptr<QVStatusEvent> statusEvent(std::int64_t status);
    /// Summary, detail, date, output file, warning flag, information button and log text, and the same warnings, which
    /// keep their parent; no parent, log, status or target uid.
    [[nodiscard]] std::shared_ptr<QVStatusEvent> copyWithZone(void* zone = nullptr) const;

    // --- warnings
    /// A copy.
    [[nodiscard]] Warnings warningList() const { return _warningList; }
    void setWarningList(Warnings warnings) { _warningList = std::move(warnings); }
    /// Appends it and gives it this parent and this event's log. No observer is told.
    void addWarning(std::shared_ptr<QVStatusEvent> warning);
    /// Adds one warning, of status 5, for each problem.
    void addWarningList(const std::vector<StatusProblem>& problems);
    /// Also the log of all warnings below the event, each once even when they contain one another.
    void setParentLog(const std::shared_ptr<QVStatusLog>& log);
    [[nodiscard]] std::shared_ptr<QVStatusLog> parentLog() const { return _parentLog.lock(); }
    [[nodiscard]] std::shared_ptr<QVStatusEvent> parent() const { return _parent.lock(); }
    void setParent(const std::shared_ptr<QVStatusEvent>& parent) { _parent = parent; }

    // --- content
    [[nodiscard]] bool isWarning() const { return _isWarning; }
    void setIsWarning(bool flag) { _isWarning = flag; }
    /// The time of creation until set.
    [[nodiscard]] Date date() const { return _date; }
    void setDate(Date date) { _date = date; }
    [[nodiscard]] const OptionalText& summary() const { return _summary; }
    void setSummary(const OptionalText& summary) { _summary = summary; }
    [[nodiscard]] const OptionalText& detail() const { return _detail; }
    void setDetail(const OptionalText& detail) { _detail = detail; }
    [[nodiscard]] const OptionalText& logFileText() const { return _logFileText; }
    void setLogFileText(const OptionalText& text) { _logFileText = text; }
    /// The file that the operation wrote; null when none.
    [[nodiscard]] const std::optional<std::filesystem::path>& outputFileURL() const { return _outputFileURL; }
    void setOutputFileURL(const std::optional<std::filesystem::path>& file) { _outputFileURL = file; }
    [[nodiscard]] std::int64_t status() const { return _status; }
    void setStatus(std::int64_t status) { _status = status; }
    /// The uid of the model object that the event is about.
    [[nodiscard]] const OptionalText& targetObjectUid() const { return _targetObjectUid; }
    void setTargetObjectUid(const OptionalText& uid) { _targetObjectUid = uid; }

    // --- information button
    [[nodiscard]] const InfoButtonAction& infoButtonAction() const { return _infoButtonAction; }
    void setInfoButtonAction(InfoButtonAction action) { _infoButtonAction = std::move(action); }
    [[nodiscard]] std::shared_ptr<void> infoButtonTarget() const { return _infoButtonTarget.get(); }
    void setInfoButtonTarget(const std::shared_ptr<void>& target) { _infoButtonTarget.set(target, *this); }
    [[nodiscard]] std::shared_ptr<void> infoButtonObject() const { return _infoButtonObject.get(); }
    void setInfoButtonObject(const std::shared_ptr<void>& object) { _infoButtonObject.set(object, *this); }
    /// What pressing the button does; nothing without an action or a target.
    void performInfoButtonAction() const;
    /// The button shows the controller's log window with this event.
    void setLogViewController(const std::shared_ptr<QVLogViewController>& controller);

    // --- output file
    using FileViewer = std::function<void(const std::filesystem::path& file)>;
    /// Replaces what shows files to the user and answers what it replaces. An empty viewer restores the default, which
    /// logs the path.
    static FileViewer setFileViewer(FileViewer viewer);
    /// Asks the file viewer to show the output file; nothing without one.
    void revealOutputFile(void* sender = nullptr) const;

    /// For logs.
    [[nodiscard]] std::string description() const;

private:
    /// Owns an object, unless it is the event that holds it: that one would never go.
    class Held {
    public:
        [[nodiscard]] std::shared_ptr<void> get() const { return _other ? _other : _holder.lock(); }
        void set(const std::shared_ptr<void>& object, const QVStatusEvent& holder);

    private:
        std::shared_ptr<void> _other;
        std::weak_ptr<void> _holder;
    };

    bool _isWarning = false;
    Date _date = std::chrono::system_clock::now();
    Warnings _warningList;
    OptionalText _logFileText;
    std::weak_ptr<QVStatusLog> _parentLog;
    std::weak_ptr<QVStatusEvent> _parent;  // the event that this one is a warning of
    OptionalText _summary;
    OptionalText _detail;
    std::optional<std::filesystem::path> _outputFileURL;
    std::int64_t _status = 0;
    InfoButtonAction _infoButtonAction;  // empty: none
    Held _infoButtonTarget;
    Held _infoButtonObject;
    OptionalText _targetObjectUid;
};

}  // namespace vellicor
