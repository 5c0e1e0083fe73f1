// vellicor/platform/undo.h — the undo manager's interface and one that works.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vellicor {

/// What model objects register the inverse of their changes with. The application may put its own manager behind it.
/// Targets are not kept alive; an action whose target is gone is skipped.
class UndoManager {
public:
    using Target = std::weak_ptr<const void>;
    using Action = std::function<void()>;

    virtual ~UndoManager() = default;
    /// Records `action` as the inverse of the change being made to `target`.
    virtual void registerUndo(Target target, Action action) = 0;
    /// Names the group that is being recorded; the last name wins.
    virtual void setActionName(std::string_view name) = 0;
    /// Forgets every recorded action of this target, to undo and to redo.
    virtual void removeAllActionsWithTarget(const Target& target) = 0;

    /// What is recorded between the two is undone at once. Groups nest; only the outermost end closes the group.
    /// Nothing for a manager that groups by itself.
    virtual void beginUndoGrouping() {}
    virtual void endUndoGrouping() {}

    /// The target with which the next recorded action is made: `prepareWithInvocationTarget(t).record(action)`.
    class Recorder {
    public:
        Recorder(UndoManager& manager, Target target) : _manager(manager), _target(std::move(target)) {}
        void record(Action action) { _manager.registerUndo(std::move(_target), std::move(action)); }

    private:
        UndoManager& _manager;
        Target _target;
    };
    Recorder prepareWithInvocationTarget(Target target) { return {*this, std::move(target)}; }
};

/// One undo group, from here to the end of the block; without a manager it does nothing. A name given here is the
/// group's, whatever the changes inside are called.
class UndoGroup {
public:
    explicit UndoGroup(UndoManager* manager, std::string name = {}) : _manager(manager), _name(std::move(name)) {
        if (_manager) _manager->beginUndoGrouping();
    }
    ~UndoGroup() {
        if (!_manager) return;
        if (!_name.empty()) _manager->setActionName(_name);
        _manager->endUndoGrouping();
    }
    UndoGroup(const UndoGroup&) = delete;
    UndoGroup& operator=(const UndoGroup&) = delete;

private:
    UndoManager* _manager;
    std::string _name;
};

/// Undo and redo stacks of groups. A registration outside `beginUndoGrouping` and `endUndoGrouping` is a group of its
/// own. Undoing runs a group in reverse; what the actions register meanwhile becomes the group to redo, under the same
/// name. A fresh registration empties the redo stack.
class StandardUndoManager : public UndoManager {
public:
    void registerUndo(Target target, Action action) override;
    void setActionName(std::string_view name) override;
    void removeAllActionsWithTarget(const Target& target) override;

    /// A group without actions is dropped.
    void beginUndoGrouping() override;
    void endUndoGrouping() override;
    [[nodiscard]] bool canUndo() const;
    [[nodiscard]] bool canRedo() const;
    /// Undo or redo the newest group; nothing when there is none. An open group is closed first.
    void undo();
    void redo();
    /// The name of what `undo` or `redo` would run next; empty when unnamed or none.
    [[nodiscard]] std::string undoActionName() const;
    [[nodiscard]] std::string redoActionName() const;
    void removeAllActions();

private:
    struct Step {
        Target target;
        Action action;
    };
    struct Group {
        std::string name;
        std::vector<Step> steps;
    };
    enum class Mode { Recording, Undoing, Redoing };

    void run(std::vector<Group>& from, std::vector<Group>& to, Mode mode);

    std::vector<Group> _undoStack;
    std::vector<Group> _redoStack;
    Group _open;                     // the group being recorded
    int _groupingDepth = 0;          // explicit nesting; 0 outside any group
    bool _newestIsUnsealed = false;  // the newest group to undo is one registration and may still be named
    Mode _mode = Mode::Recording;
};

/// The text of an action name in the user's language; the name itself when there is no translation.
[[nodiscard]] std::string localizedActionName(std::string_view name);
/// Replaces the look-up behind `localizedActionName`; an empty result of `lookup` stands for "no translation".
void setActionNameLocalizer(std::function<std::string(std::string_view)> lookup);

}  // namespace vellicor
