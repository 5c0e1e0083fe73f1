// vellicor/model/table_components.cpp — the component list of a table: adding, removing, reordering, walking.
#include <algorithm>

#include "vellicor/model/component_index.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/foreign_key_names.h"
#include "vellicor/model/index.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

[[noreturn]] void raiseAddFieldException(const std::exception& error) {
    throw SQLException(exceptions::addField, text("AddComponent: %@", error.what()));
}

}  // namespace

// --- adding

void SQLTable::add(const std::shared_ptr<SQLTableComponent>& component) {
    if (component && component->getName().empty()) component->setName(getValidName(""));
    addComponent(component);
}

void SQLTable::addWithRenaming(const std::shared_ptr<SQLTableComponent>& component) {
    bool didRename = false;
    addWithRenaming(component, didRename);
}

void SQLTable::addWithRenaming(const std::shared_ptr<SQLTableComponent>& component, bool& didRename) {
    if (!component) throw SQLException(exceptions::parsing, "field was null");
    const OptionalText before = component->name();
    std::string name = getValidName(before);
    if (as<SQLIndex>(component)) {
        name = component->prefixedName(name, *this);
    } else if (as<SQLForeignKey>(component)) {
        name = component->prefixedName(name, *this);
        if (SQLContainer* document = topLevelContainer())
            name = document->validNameForForeignKey(*component, name, false);
    }
    component->setName(name);
    didRename = component->name() != before;
    add(component);
}

void SQLTable::addComponent(const std::shared_ptr<SQLTableComponent>& component) {
    if (as<SQLField>(component))
        addComponentField(component);
    else
        addComponentGeneral(component);
}

void SQLTable::addComponentField(const std::shared_ptr<SQLTableComponent>& component) {
    try {
        // A size alone is no type.
        if (auto field = as<SQLField>(component); field && field->getDataType().empty()) field->setType("INTEGER");
        addUniqueComponent(component);
    } catch (const SQLException& error) {
        if (error.name() == exceptions::duplicateField) throw;
        raiseAddFieldException(error);
    } catch (const std::exception& error) {
        raiseAddFieldException(error);
    }
}

void SQLTable::addComponentGeneral(const std::shared_ptr<SQLTableComponent>& component) {
    try {
        addUniqueComponent(component);
    } catch (const std::exception& error) {
        raiseAddFieldException(error);
    }
}

void SQLTable::addUniqueComponent(const std::shared_ptr<SQLTableComponent>& component) {
    if (!component)
        throw SQLException(exceptions::nilField, text("Nil field exception on %@(%@)", getName(), OptionalText()));
    SQLContainer* document = topLevelContainer();
    if (document && document->uidInContainer(component->uid())) component->createNewUid();
    if (holdsComponentLike(*component))
        throw SQLException(exceptions::duplicateField,
                           text("Duplicate field exception on %@(%@)", getName(), component->getName()));
    appendComponent(component);
    if (document) document->addUidForObject(*component);
    updatePrimaryKeyList();
    notifyFieldObservers();
}

void SQLTable::appendComponent(const std::shared_ptr<SQLTableComponent>& component) {
    auto components = _fields.lock();
    components->push_back(component);
    component->setParent(this);
    _primaryKey.reset();
    component->foreignKeyDidChange();
    if (const auto* column = as<SQLField>(component.get()); column && column->hasConnectedObjects())
        ForeignKeyNames::noteLoss();  // keys that pointed to a column without a table have a target now
    if (_names) _names->append(*component);
    if (_uids) _uids->enter(*component, component->uid());
}

void SQLTable::addCheckConstraint(const std::shared_ptr<SQLConstraint>& constraint) { add(constraint); }

void SQLTable::addParsedIndexWithName(const OptionalText& name, const std::vector<std::string>& fieldNames,
                                      const OptionalText& type) {
    auto index = SQLIndex::indexWithName("idx");
    index->setIndexType(type);
    if (name && !name->empty()) index->setName(name);
    for (const std::string& fieldName : fieldNames)
        if (SQLField* field = getFieldByName(fieldName)) index->addIndexField(*field);
    addWithRenaming(index);
}

// --- removing and replacing

void SQLTable::remove(SQLTableComponent* component) {
    if (!component) {
        log("Note: Attempt to remove nil field");
        return;
    }
    std::shared_ptr<SQLTableComponent> removed;
    {
        auto components = _fields.lock();
        auto found = std::ranges::find(*components, component, &std::shared_ptr<SQLTableComponent>::get);
        if (found == components->end()) return;
        removed = *found;
        components->erase(std::remove(found, components->end(), removed), components->end());
        if (_names)
            _numberHints.nameBecameFree(_names->remove(*removed));
        else
            _numberHints.clear();
        if (_uids) _uids->remove(*removed);
        _primaryKey.reset();
        ForeignKeyNames::noteLoss();
    }
    updatePrimaryKeyList();
    removed->setParent(nullptr);
    if (SQLContainer* document = topLevelContainer()) document->removeUidForObject(*removed);
    notifyFieldObservers();
}

void SQLTable::setFields(Components next) {
    std::erase(next, nullptr);
    {
        auto components = _fields.lock();
        for (const auto& component : *components)
            if (component->container() == this) component->setParent(nullptr);
        components->swap(next);
        for (const auto& component : *components) component->setParent(this);
        _primaryKey.reset();
        ForeignKeyNames::noteLoss();
        _names.reset();
        _numberHints.clear();
        _uids.reset();
    }
    notifyFieldObservers();
}

// --- reordering

void SQLTable::reorder(SQLTableComponent& component, std::size_t position) {
    reorderFieldWithUid(component.uid(), position);
}

void SQLTable::reorderFieldWithUid(std::string_view uid, std::size_t position) {
    auto components = _fields.lock();
    SQLTableComponent* component = getFieldByUID(uid);
    if (!component || component->container() != this) return;
    if (position == kNoPosition || position > components->size()) return;
    const std::size_t oldPosition = indexOfField(*component);
    if (oldPosition == kNotFound) return;
    try {
        auto moved = (*components)[oldPosition];
        components->erase(components->begin() + static_cast<std::ptrdiff_t>(oldPosition));
        const std::size_t newPosition = std::min(position, components->size());
        components->insert(components->begin() + static_cast<std::ptrdiff_t>(newPosition), moved);
        _primaryKey.reset();
        _names.reset();
        notifyFieldObservers();
        registerUndo(this, [uid = std::string(uid), oldPosition](SQLTable& table) {
            table.reorderFieldWithUid(uid, oldPosition);
        });
        setUndoActionName("reorder fields");
    } catch (const std::exception& error) {
        log(text("exception when reordering field %@ %lu %@", component->getName(), position, error.what()));
    }
}

// --- lists

SQLTable::Components SQLTable::components() const {
    auto components = _fields.lock();
    return *components;
}

SQLTable::Fields SQLTable::columnObjectList() const {
    Fields columns;
    forEachComponent<SQLField>([&](SQLField& column) { columns.push_back(&column); });
    return columns;
}

std::size_t SQLTable::fieldCount() const {
    auto components = _fields.lock();
    return components->size();
}

bool SQLTable::contains(const SQLTableComponent& component) const {
    auto components = _fields.lock();
    if (const ComponentNames* known = names(*components)) return known->contains(component);
    return indexOfField(component) != kNotFound;
}

std::size_t SQLTable::indexOfField(const SQLTableComponent& component) const {
    auto components = _fields.lock();
    auto found = std::ranges::find(*components, &component, &std::shared_ptr<SQLTableComponent>::get);
    return found == components->end() ? kNotFound : static_cast<std::size_t>(found - components->begin());
}

SQLTableComponent* SQLTable::getField(std::size_t index) const {
    auto components = _fields.lock();
    return index < components->size() ? (*components)[index].get() : nullptr;
}

SQLTableComponent* SQLTable::objectOfClass(const ClassFilter& filter, std::size_t index) const {
    auto components = _fields.lock();
    for (const auto& component : *components)
        if (filter(*component) && index-- == 0) return component.get();
    return nullptr;
}

SQLTable::Components SQLTable::fieldArrayOfClass(const ClassFilter& filter) const {
    auto components = _fields.lock();
    Components ofClass;
    for (const auto& component : *components)
        if (filter(*component)) ofClass.push_back(component);
    return ofClass;
}

SQLTableComponent* SQLTable::getNextField(const SQLTableComponent& component) const {
    auto components = _fields.lock();
    const std::size_t position = indexOfField(component);
    return position == kNotFound ? nullptr : (*components)[(position + 1) % components->size()].get();
}

SQLTableComponent* SQLTable::getPreviousField(const SQLTableComponent& component) const {
    auto components = _fields.lock();
    const std::size_t position = indexOfField(component), count = components->size();
    return position == kNotFound ? nullptr : (*components)[(position + count - 1) % count].get();
}

std::vector<std::shared_ptr<SQLObject>> SQLTable::flatObjectList() {
    auto components = _fields.lock();
    std::vector<std::shared_ptr<SQLObject>> objects{shared_from_this()};
    objects.insert(objects.end(), components->begin(), components->end());
    return objects;
}

}  // namespace vellicor
