// vellicor/model/label_manager.h — a document's labels, and which objects carry them.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "vellicor/model/forward.h"
#include "vellicor/platform/color.h"
#include "vellicor/platform/keyed_archive.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/xml_element.h"
#include "vellicor/util/sparse_array.h"

namespace vellicor {

/// Keeps the labels in order and groups the document's objects by the label they carry. Objects without a label, with
/// one that has no uid, or with the default label, are in the group "Default". An object is in one group at most.
class SQLObjectLabelManager : public std::enable_shared_from_this<SQLObjectLabelManager> {
public:
    using Labels = std::vector<std::shared_ptr<SQLObjectLabel>>;
    static constexpr const char* kDefaultGroup = "Default";

    explicit SQLObjectLabelManager(SQLContainer* container) : _container(container) {}
    void init() {}
    [[nodiscard]] SQLContainer* container() const { return _container; }
    void setContainer(SQLContainer* container) { _container = container; }
    /// A copy.
    [[nodiscard]] Labels labelList() const { return _labelList; }

    // --- labels; every change posts "ObjectLabelListChanged"
    /// Undoable.
    void addLabel(std::shared_ptr<SQLObjectLabel> label, bool ignoreDuplicates);
    /// Undoable; nothing for a label that is not in the list.
    void removeLabel(std::shared_ptr<SQLObjectLabel> label);
    void removeAllLabels();
    /// The same uid, or the same name and colour.
    [[nodiscard]] bool containsLabel(const SQLObjectLabel& label) const { return labelMatchingLabel(label) != nullptr; }
    /// The first that is the same in that sense; null when none.
    [[nodiscard]] std::shared_ptr<SQLObjectLabel> labelMatchingLabel(const SQLObjectLabel& label) const;
    /// Null when none.
    [[nodiscard]] std::shared_ptr<SQLObjectLabel> labelWithUid(std::string_view uid) const;
    /// The first of that name and colour, or a new one added to the list.
    std::shared_ptr<SQLObjectLabel> objectLabelWithName(std::string_view name, const Color& color);
    [[nodiscard]] Color labelColorForObject(const SQLObject& object) const;
    /// Gives the object the label that its property "labelName" names.
    void createLabelFromObjectIfRequired(SQLObject& object);
    /// Copies of another document's labels, uids kept, without those that are contained already; of these, a label of
    /// the same uid is from then on hidden or expanded as the other one is. Without undo.
    void loadLabelsFromManager(const SQLObjectLabelManager& other);
    void updateLabelListFromItemMerged(SQLObject& object);

    // --- groups
    /// Inserts at the object's `labelIndex`, clamped to the group. Asserts "label shouldn't be nil here".
    void addObjectToLabelList(SQLObject& object);
    void removeObjectFromLabelList(SQLObject& object, bool isDeleted);
    void updateLabelListForObject(SQLObject& object);
    /// Within its group, clamped; the group's label indexes are renumbered.
    void moveObject(SQLObject& object, std::size_t toPosition);
    /// Makes the groups anew from the document's objects.
    void updateLabelList();
    /// Sorts a group by "labelIndex" and renumbers it.
    void reorderTablesFromIndexes(std::string_view group);
    /// Sorts the labels by name.
    void sortLabelTable();
    /// Null stands for the default group.
    [[nodiscard]] std::vector<SQLObject*> tablesWithLabel(const SQLObjectLabel* label) const;
    [[nodiscard]] std::size_t countOfObjectsWithLabel(const SQLObjectLabel* label) const;
    /// Group sizes by label uid or "Default".
    [[nodiscard]] std::unordered_map<std::string, std::size_t> objectCountByLabel() const;
    /// Sorts every group by "labelIndex"; the indexes stay as they were read.
    void postLoadProcess();

    // --- document and archive
    void exportLabelsToXMLNode(const XMLElement& node) const;
    void encodeWithCoder(KeyedArchiver& coder) const;

private:
    using Group = QVSparseMutableArray<SQLObject>;  // without gaps
    struct Member {
        std::shared_ptr<SQLObject> object;
        Group* group;
    };
    /// The first label of each uid and of each look, by its place in the list.
    struct LabelIndex {
        std::uint64_t changeCount;
        std::unordered_map<std::string, std::size_t, TextHash, std::equal_to<>> byUid;
        std::unordered_map<std::string, std::size_t, TextHash, std::equal_to<>> byLook;
    };

    [[nodiscard]] static std::string groupKey(const SQLObjectLabel* label);
    [[nodiscard]] const Group* groupOf(const SQLObjectLabel* label) const;
    static void sortGroup(Group& group);
    static void renumber(const Group& group);
    [[nodiscard]] const LabelIndex& labelIndex() const;
    static void enter(LabelIndex& index, const SQLObjectLabel& label, std::size_t place);
    void append(const std::shared_ptr<SQLObjectLabel>& label);
    void labelsChanged() const;
    void registerUndo(std::function<void(SQLObjectLabelManager&)> inverse);

    SQLContainer* _container;  // never owned; null once the document is gone
    Labels _labelList;
    std::unordered_map<std::string, Group, TextHash, std::equal_to<>> _groups;
    std::unordered_map<const SQLObject*, Member> _members;
    mutable std::optional<LabelIndex> _labelIndex;  // null while it must be made anew
};

}  // namespace vellicor
