// vellicor/platform/undo.cpp — the undo and redo stacks.
#include "vellicor/platform/undo.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "vellicor/platform/guarded.h"

namespace vellicor {

namespace {

/// The same object, also when it is gone.
bool isSameTarget(const UndoManager::Target& a, const UndoManager::Target& b) {
    return !a.owner_before(b) && !b.owner_before(a);
}

using Localizer = std::function<std::string(std::string_view)>;

Guarded<Localizer>& currentLocalizer() {
    static auto& localizer = *new Guarded<Localizer>;
    return localizer;
}

}  // namespace

void StandardUndoManager::registerUndo(Target target, Action action) {
    _open.steps.push_back({std::move(target), std::move(action)});
    if (_mode != Mode::Recording) return;
    // Emptied only after the stack is in order: what the dropped actions kept alive may call back.
    std::vector<Group> forgotten = std::exchange(_redoStack, {});
    if (_groupingDepth > 0) return;
    _undoStack.push_back(std::exchange(_open, {}));
    _newestIsUnsealed = true;
}

void StandardUndoManager::setActionName(std::string_view name) {
    if (_mode != Mode::Recording) return;  // undo and redo keep the name of the group they run
    if (_groupingDepth > 0)
        _open.name = name;
    else if (_newestIsUnsealed)
        _undoStack.back().name = name;
}

void StandardUndoManager::removeAllActionsWithTarget(const Target& target) {
    std::vector<Step> forgotten;
    auto forget = [&](Group& group) {
        auto kept = std::stable_partition(group.steps.begin(), group.steps.end(),
                                          [&](const Step& step) { return !isSameTarget(step.target, target); });
        std::move(kept, group.steps.end(), std::back_inserter(forgotten));
        group.steps.erase(kept, group.steps.end());
        return group.steps.empty();
    };
    forget(_open);
    std::erase_if(_undoStack, forget);
    std::erase_if(_redoStack, forget);
    _newestIsUnsealed = false;
}

void StandardUndoManager::beginUndoGrouping() {
    if (_groupingDepth++ == 0) _newestIsUnsealed = false;
}

void StandardUndoManager::endUndoGrouping() {
    if (_groupingDepth == 0 || --_groupingDepth > 0 || _mode != Mode::Recording) return;
    Group closed = std::exchange(_open, {});
    if (!closed.steps.empty()) _undoStack.push_back(std::move(closed));
}

bool StandardUndoManager::canUndo() const { return !_undoStack.empty() || !_open.steps.empty(); }

bool StandardUndoManager::canRedo() const { return !_redoStack.empty(); }

void StandardUndoManager::undo() { run(_undoStack, _redoStack, Mode::Undoing); }

void StandardUndoManager::redo() { run(_redoStack, _undoStack, Mode::Redoing); }

void StandardUndoManager::run(std::vector<Group>& from, std::vector<Group>& to, Mode mode) {
    if (_mode != Mode::Recording) return;
    if (_groupingDepth > 0) {
        _groupingDepth = 1;
        endUndoGrouping();
    }
    _newestIsUnsealed = false;
    if (from.empty()) return;

    Group group = std::move(from.back());
    from.pop_back();
    _mode = mode;
    auto finish = [&] {
        _mode = Mode::Recording;
        _groupingDepth = 0;
        Group inverse = std::exchange(_open, {});
        inverse.name = std::move(group.name);
        if (!inverse.steps.empty()) to.push_back(std::move(inverse));
    };
    try {
        std::for_each(group.steps.rbegin(), group.steps.rend(), [](const Step& step) {
            if (std::shared_ptr<const void> alive = step.target.lock()) step.action();
        });
    } catch (...) {
        finish();
        throw;
    }
    finish();
}

std::string StandardUndoManager::undoActionName() const {
    if (!_open.steps.empty()) return _open.name;
    return _undoStack.empty() ? std::string() : _undoStack.back().name;
}

std::string StandardUndoManager::redoActionName() const {
    return _redoStack.empty() ? std::string() : _redoStack.back().name;
}

void StandardUndoManager::removeAllActions() {
    std::vector<Group> forgottenUndo = std::exchange(_undoStack, {});
    std::vector<Group> forgottenRedo = std::exchange(_redoStack, {});
    Group forgottenOpen = std::exchange(_open, {});
    _newestIsUnsealed = false;
}

std::string localizedActionName(std::string_view name) {
    Localizer localizer = *currentLocalizer().lock();
    std::string translation = localizer ? localizer(name) : std::string();
    return translation.empty() ? std::string(name) : translation;
}

void setActionNameLocalizer(Localizer lookup) { *currentLocalizer().lock() = std::move(lookup); }

}  // namespace vellicor
