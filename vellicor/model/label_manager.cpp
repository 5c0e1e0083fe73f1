// vellicor/model/label_manager.cpp — the list of labels, and the groups of objects that carry them.
#include "vellicor/model/label_manager.h"

#include <algorithm>

#include "vellicor/model/container.h"
#include "vellicor/model/label.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/notifications.h"

namespace vellicor {

namespace {

/// Name and colour text as one key.
std::string lookOf(std::string_view name, const Color& color) {
    return std::string(name) + '\n' + color.convertedToSRGB().string();
}

Value flagText(bool flag) { return flag ? "1" : "0"; }

}  // namespace

void SQLObjectLabelManager::addLabel(std::shared_ptr<SQLObjectLabel> label, bool ignoreDuplicates) {
    if (!label || (ignoreDuplicates && containsLabel(*label))) return;
    append(label);
    labelsChanged();
    registerUndo([label](SQLObjectLabelManager& manager) { manager.removeLabel(label); });
}

void SQLObjectLabelManager::removeLabel(std::shared_ptr<SQLObjectLabel> label) {
    if (std::erase(_labelList, label) == 0) return;
    _labelIndex.reset();
    labelsChanged();
    registerUndo([label](SQLObjectLabelManager& manager) { manager.addLabel(label, false); });
}

void SQLObjectLabelManager::removeAllLabels() {
    _labelList.clear();
    _labelIndex.reset();
    updateLabelList();
    labelsChanged();
}

std::shared_ptr<SQLObjectLabel> SQLObjectLabelManager::labelMatchingLabel(const SQLObjectLabel& label) const {
    const LabelIndex& index = labelIndex();
    std::size_t first = _labelList.size();
    if (auto found = index.byUid.find(label.uid()); found != index.byUid.end()) first = found->second;
    if (auto found = index.byLook.find(lookOf(label.getName(), label.color())); found != index.byLook.end())
        first = std::min(first, found->second);
    return first < _labelList.size() ? _labelList[first] : nullptr;
}

std::shared_ptr<SQLObjectLabel> SQLObjectLabelManager::labelWithUid(std::string_view uid) const {
    const LabelIndex& index = labelIndex();
    const auto found = index.byUid.find(uid);
    return found == index.byUid.end() ? nullptr : _labelList[found->second];
}

std::shared_ptr<SQLObjectLabel> SQLObjectLabelManager::objectLabelWithName(std::string_view name, const Color& color) {
    const LabelIndex& index = labelIndex();
    if (auto found = index.byLook.find(lookOf(name, color)); found != index.byLook.end())
        return _labelList[found->second];
    auto label = SQLObjectLabel::labelWithName(std::string(name), color);
    addLabel(label, false);
    return label;
}

Color SQLObjectLabelManager::labelColorForObject(const SQLObject& object) const {
    if (object.label()) return object.label()->color();
    for (const char* key : {keys::labelColor, keys::fieldBackgroundColor})
        if (const std::string color = object.getProperty(key); !color.empty()) return Color::colorWithString(color);
    return object.defaultLabelColor();
}

void SQLObjectLabelManager::createLabelFromObjectIfRequired(SQLObject& object) {
    const std::string name = object.getProperty(keys::labelName);
    if (name.empty() || name == "null" || name == kDefaultGroup) return;
    const auto wanted = SQLObjectLabel::labelWithName(name, labelColorForObject(object));
    auto label = labelMatchingLabel(*wanted);
    if (!label) {
        // The uid that the label had when the object was saved; so saving it once more changes nothing. The label takes
        // it before it is listed, since groups are kept by uid.
        const std::string uid = object.getProperty(keys::labelUid);
        if (!uid.empty() && !labelWithUid(uid)) wanted->setUid(uid);
        label = wanted;
        addLabel(label, false);
    }
    object.setLabel(label);
}

void SQLObjectLabelManager::loadLabelsFromManager(const SQLObjectLabelManager& other) {
    if (&other == this) return;
    for (const auto& label : other._labelList) {
        if (const auto own = labelWithUid(label->uid())) {
            // The same label, which an object brought back by its name and colour alone.
            own->setIsExpanded(label->isExpanded());
            own->setIsHidden(label->isHidden());
        } else if (!containsLabel(*label)) {
            append(copyOf(*label));
        }
    }
    labelsChanged();
}

void SQLObjectLabelManager::updateLabelListFromItemMerged(SQLObject& object) {
    createLabelFromObjectIfRequired(object);
    updateLabelListForObject(object);
}

void SQLObjectLabelManager::addObjectToLabelList(SQLObject& object) {
    const std::string key = groupKey(object.label().get());
    if (key.empty()) throw AssertionFailure("label shouldn't be nil here");
    removeObjectFromLabelList(object, false);
    Group& group = _groups[key];
    // Kept: without an index of its own, an object goes first.
    const auto index = static_cast<Group::Index>(std::max(object.labelIndex(), 0));
    group.insertAt(std::min(index, group.length()), &object);
    _members.insert_or_assign(&object, Member{object.shared_from_this(), &group});
}

void SQLObjectLabelManager::removeObjectFromLabelList(SQLObject& object, bool /*isDeleted*/) {
    const auto member = _members.find(&object);
    if (member == _members.end()) return;
    const auto keptAlive = member->second.object;
    member->second.group->remove(&object);
    _members.erase(member);
}

void SQLObjectLabelManager::updateLabelListForObject(SQLObject& object) {
    removeObjectFromLabelList(object, false);
    addObjectToLabelList(object);
}

void SQLObjectLabelManager::moveObject(SQLObject& object, std::size_t toPosition) {
    const auto member = _members.find(&object);
    if (member == _members.end()) return;
    Group& group = *member->second.group;
    group.insertAt(std::min<Group::Index>(toPosition, group.length() - 1), &object);
    renumber(group);
}

void SQLObjectLabelManager::updateLabelList() {
    const auto previous = std::exchange(_members, {});  // kept alive until the new groups are made
    _groups.clear();
    for (const auto& label : _labelList) _groups.try_emplace(groupKey(label.get()));
    if (!_container) return;
    for (const auto& object : _container->objectList()) addObjectToLabelList(*object);
}

void SQLObjectLabelManager::reorderTablesFromIndexes(std::string_view group) {
    const auto found = _groups.find(group);
    if (found == _groups.end()) return;
    sortGroup(found->second);
    renumber(found->second);
}

void SQLObjectLabelManager::sortLabelTable() {
    std::vector<std::pair<std::string, std::shared_ptr<SQLObjectLabel>>> keyed;
    for (const auto& label : _labelList) keyed.emplace_back(nameSortKey(label->getName()), label);
    std::ranges::stable_sort(keyed, {}, [](const auto& entry) -> const std::string& { return entry.first; });
    std::ranges::transform(keyed, _labelList.begin(), [](auto& entry) { return std::move(entry.second); });
    _labelIndex.reset();
    labelsChanged();
}

std::vector<SQLObject*> SQLObjectLabelManager::tablesWithLabel(const SQLObjectLabel* label) const {
    const Group* group = groupOf(label);
    return group ? group->objects() : std::vector<SQLObject*>();
}

std::size_t SQLObjectLabelManager::countOfObjectsWithLabel(const SQLObjectLabel* label) const {
    const Group* group = groupOf(label);
    return group ? group->count() : 0;
}

std::unordered_map<std::string, std::size_t> SQLObjectLabelManager::objectCountByLabel() const {
    std::unordered_map<std::string, std::size_t> counts;
    for (const auto& [key, group] : _groups) counts.emplace(key, group.count());
    return counts;
}

void SQLObjectLabelManager::postLoadProcess() {
    for (auto& [key, group] : _groups) sortGroup(group);
}

void SQLObjectLabelManager::exportLabelsToXMLNode(const XMLElement& node) const {
    for (const auto& label : _labelList) label->exportToXMLNode(&node);
}

void SQLObjectLabelManager::encodeWithCoder(KeyedArchiver& coder) const {
    Value::List labels;
    for (const auto& label : _labelList)
        labels.emplace_back(Value::Map{{"name", label->getName()},
                                       {"colorString", label->colorString()},
                                       {"hidden", flagText(label->isHidden())},
                                       {"expanded", flagText(label->isExpanded())}});
    coder.encode(std::move(labels), "labels");
}

std::string SQLObjectLabelManager::groupKey(const SQLObjectLabel* label) {
    const std::string uid = label && !label->isDefault() ? label->uid() : std::string();
    return uid.empty() ? kDefaultGroup : uid;
}

const SQLObjectLabelManager::Group* SQLObjectLabelManager::groupOf(const SQLObjectLabel* label) const {
    const auto found = _groups.find(groupKey(label));
    return found == _groups.end() ? nullptr : &found->second;
}

void SQLObjectLabelManager::sortGroup(Group& group) {
    std::vector<std::pair<std::int32_t, SQLObject*>> keyed;
    keyed.reserve(group.count());
    for (SQLObject* object : group) keyed.emplace_back(object->labelIndex(), object);
    auto byIndex = [](const auto& a, const auto& b) { return a.first < b.first; };
    if (std::ranges::is_sorted(keyed, byIndex)) return;
    std::ranges::stable_sort(keyed, byIndex);
    group.removeAll();
    for (const auto& [index, object] : keyed) group.append(object);
}

void SQLObjectLabelManager::renumber(const Group& group) {
    std::uint64_t index = 0;
    for (SQLObject* object : group.objects()) object->setLabelIndex(index++);
}

const SQLObjectLabelManager::LabelIndex& SQLObjectLabelManager::labelIndex() const {
    if (!_labelIndex || _labelIndex->changeCount != SQLObjectLabel::changeCount()) {
        _labelIndex.emplace();
        _labelIndex->changeCount = SQLObjectLabel::changeCount();
        for (std::size_t place = 0; place < _labelList.size(); ++place) enter(*_labelIndex, *_labelList[place], place);
    }
    return *_labelIndex;
}

void SQLObjectLabelManager::enter(LabelIndex& index, const SQLObjectLabel& label, std::size_t place) {
    index.byUid.emplace(label.uid(), place);
    index.byLook.emplace(lookOf(label.getName(), label.color()), place);
}

void SQLObjectLabelManager::append(const std::shared_ptr<SQLObjectLabel>& label) {
    label->_isListed = true;
    _labelList.push_back(label);
    if (_labelIndex) enter(*_labelIndex, *label, _labelList.size() - 1);
    _groups.try_emplace(groupKey(label.get()));
}

void SQLObjectLabelManager::labelsChanged() const {
    NotificationCenter::post(notifications::objectLabelListChanged, this);
}

void SQLObjectLabelManager::registerUndo(std::function<void(SQLObjectLabelManager&)> inverse) {
    UndoManager* manager = _container ? _container->undoManager() : nullptr;
    if (manager) manager->registerUndo(weak_from_this(), [this, inverse = std::move(inverse)] { inverse(*this); });
}

}  // namespace vellicor
