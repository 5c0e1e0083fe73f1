// vellicor/util/status_event.cpp — warnings below warnings, and what an event offers the user.
#include "vellicor/util/status_event.h"

#include <unordered_set>
#include <utility>

#include "vellicor/platform/guarded.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/numbers.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/util/status_log.h"

namespace vellicor {

namespace {

/// Never destroyed, so that events that outlive other statics find it.
Guarded<QVStatusEvent::FileViewer>& currentFileViewer() {
    static auto& viewer = *new Guarded<QVStatusEvent::FileViewer>;
    return viewer;
}

}  // namespace

StatusProblem::StatusProblem(const Value& value) {
    if (const std::string* words = value.asText()) _text = *words;
    if (const bool* flag = value.asBoolean()) _text = PropertyValue::boolean(*flag).text();
    if (const std::int64_t* number = value.asInteger()) _text = PropertyValue::integer(*number).text();
    if (const double* number = value.asReal()) _text = PropertyValue::real(*number).text();
}

QVStatusEvent::~QVStatusEvent() {
    // Warnings that nobody else holds go one by one, not each inside the one above it.
    Warnings remaining = std::move(_warningList);
    while (!remaining.empty()) {
        const std::shared_ptr<QVStatusEvent> last = std::move(remaining.back());
        remaining.pop_back();
        if (last.use_count() != 1) continue;
        for (auto& warning : last->_warningList) remaining.push_back(std::move(warning));
        last->_warningList.clear();
    }
}

std::shared_ptr<QVStatusEvent> QVStatusEvent::initWithSummary(const OptionalText& summary, const OptionalText& detail) {
    auto event = std::make_shared<QVStatusEvent>();
    event->_summary = summary;
    event->_detail = detail;
    return event;
}

std::shared_ptr<QVStatusEvent> QVStatusEvent::statusEvent(std::int64_t status) {
    auto event = std::make_shared<QVStatusEvent>();
    event->_status = status;
    return event;
}

std::shared_ptr<QVStatusEvent> QVStatusEvent::copyWithZone(void*) const {
    auto copy = initWithSummary(_summary, _detail);
    copy->_date = _date;
    copy->_outputFileURL = _outputFileURL;
    copy->_isWarning = _isWarning;
    copy->_infoButtonAction = _infoButtonAction;
    copy->setInfoButtonTarget(infoButtonTarget());
    copy->setInfoButtonObject(infoButtonObject());
    copy->_logFileText = _logFileText;
    copy->_warningList = _warningList;
    return copy;
}

void QVStatusEvent::addWarning(std::shared_ptr<QVStatusEvent> warning) {
    if (!warning) return;
    _warningList.push_back(warning);
    warning->_parent = weak_from_this();
    warning->setParentLog(parentLog());
}

void QVStatusEvent::addWarningList(const std::vector<StatusProblem>& problems) {
    for (const StatusProblem& problem : problems) {
        auto warning = statusEvent(kProblemListStatus);
        warning->_summary = problem.text();
        warning->_isWarning = true;
        addWarning(warning);
    }
}

void QVStatusEvent::setParentLog(const std::shared_ptr<QVStatusLog>& log) {
    std::vector<QVStatusEvent*> open{this};
    std::unordered_set<const QVStatusEvent*> visited{this};
    while (!open.empty()) {
        QVStatusEvent* event = open.back();
        open.pop_back();
        event->_parentLog = log;
        for (const auto& warning : event->_warningList) {
            if (warning && visited.insert(warning.get()).second) open.push_back(warning.get());
        }
    }
}

void QVStatusEvent::Held::set(const std::shared_ptr<void>& object, const QVStatusEvent& holder) {
    const auto self = holder.weak_from_this();
    const bool isHolder = object && !object.owner_before(self) && !self.owner_before(object);
    _other = isHolder ? nullptr : object;
    _holder = isHolder ? object : nullptr;
}

void QVStatusEvent::performInfoButtonAction() const {
    const auto target = infoButtonTarget();
    const auto object = infoButtonObject();
    if (_infoButtonAction && target) _infoButtonAction(target.get(), object.get());
}

void QVStatusEvent::setLogViewController(const std::shared_ptr<QVLogViewController>& controller) {
    setInfoButtonTarget(controller);
    setInfoButtonObject(weak_from_this().lock());
    _infoButtonAction = [](void* target, void* object) {
        if (object) static_cast<QVLogViewController*>(target)->showLogWindow(*static_cast<QVStatusEvent*>(object));
    };
}

QVStatusEvent::FileViewer QVStatusEvent::setFileViewer(FileViewer viewer) {
    auto current = currentFileViewer().lock();
    return std::exchange(*current, std::move(viewer));
}

void QVStatusEvent::revealOutputFile(void*) const {
    if (!_outputFileURL) return;
    FileViewer viewer = *currentFileViewer().lock();
    if (viewer)
        viewer(*_outputFileURL);
    else
        log(text("output file: %@", _outputFileURL->string()));
}

std::string QVStatusEvent::description() const {
    const std::string inherited = text("<QVStatusEvent: %p>", addressText(this));
    return text("%@ - summary:'%@' detail:'%@'", inherited, _summary, _detail);
}

}  // namespace vellicor
