// vellicor/model/container.cpp — what a document is made of; adding, removing, merging.
#include "vellicor/model/container.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "vellicor/model/comment.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key_graph.h"
#include "vellicor/model/label.h"
#include "vellicor/model/label_manager.h"
#include "vellicor/model/schema.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

[[noreturn]] void refuse(const SQLObject* object) {
    throw SQLException(
        exceptions::unknownType,
        text("Warning adding object of type %@ failed, only subclasses of SQLObjectPeer can be added to SQLContainers",
             object ? OptionalText(object->description()) : std::nullopt));
}

/// Whatever outlives the document, or leaves it, must not point to it any more.
template <class Part>
void detach(Part* part, const SQLContainer& document) {
    if (part && part->container() == &document) part->setContainer(nullptr);
}

}  // namespace

/// Hears of the new names and uids of objects that report to another holder. Guarded by the list's lock.
class SQLContainer::GuestWatch : public KeyObserver {
public:
    explicit GuestWatch(const SQLContainer& container) : _container(container) {}

    void add(SQLObject& object) {
        Guest& guest = _guests[&object];
        if (!guest.object.expired()) return;
        // Unknown so far, or at the address of one that died.
        guest.object = object.weak_from_this();
        guest.observations = {object.observe(*this, "name"), object.observe(*this, "displayName"),
                              object.observe(*this, keys::uid)};
    }
    void remove(const SQLObject& object) { _guests.erase(&object); }
    void didChangeValue(const void* object, std::string_view key) override {
        auto stale = const_cast<SQLContainer&>(_container)._staleKeys.lock();
        (key == keys::uid ? stale->uids : stale->names).insert(static_cast<const SQLObject*>(object));
    }

private:
    struct Guest {
        std::weak_ptr<SQLObject> object;
        std::array<Observation, 3> observations;
    };

    const SQLContainer& _container;
    std::unordered_map<const SQLObject*, Guest> _guests;
};

SQLContainer::SQLContainer(Creation creation) : SQLObjectPeer(creation) {}

SQLContainer::~SQLContainer() {
    _guests.reset();
    auto list = _objectList.lock();
    list->forEach([&](const auto& object) { detach(object.get(), *this); });
    auto stacking = _zorderArray.lock();
    for (const auto& [address, object] : stacking->owned) detach(object.get(), *this);
    for (const auto& departed : _departed) detach(departed.lock().get(), *this);
    detach(_documentInfo.get(), *this);
    detach(_objectLabelManager.get(), *this);
    detach(_fkObjectGraph.get(), *this);
}

void SQLContainer::init() {
    _defaultSchema = SQLSchema::unspecifiedSchema();
    _schemaList.add(_defaultSchema);
    SQLObjectPeer::init();
    _documentInfo = create<SQLDocumentInfo>();
    _documentInfo->setContainer(this);
    _objectLabelManager = create<SQLObjectLabelManager>(this);
    _fkObjectGraph = create<SQLForeignKeyObjectGraph>(this);
}

std::string SQLContainer::description() const {
    std::string list = "(";
    auto objects = lockedList();
    objects->forEach(
        [&](const auto& object) { list += (list.size() > 1 ? ",\n    " : "\n    ") + object->description(); });
    return text("%@ - %@", SQLObjectPeer::description(), list + "\n)");
}

// --- adding

AddResult SQLContainer::add(const std::shared_ptr<SQLObject>& object) {
    if (auto peer = as<SQLObjectPeer>(object)) return addWithRenaming(peer);
    auto label = as<SQLObjectLabel>(object);
    if (!label) refuse(object.get());
    _objectLabelManager->addLabel(label, false);  // under its own uid, also when a document brought it
    return {true, label->getName()};
}

void SQLContainer::addObjects(const std::vector<std::shared_ptr<SQLObject>>& objects) {
    const auto locks = lockedWithHolders({this}, [&] { return objects; });
    for (const auto& object : objects) {
        if (as<SQLObjectPeer>(object.get()) || as<SQLObjectLabel>(object.get()))
            add(object);
        else
            log(text("Note: ignored object: %@", object ? OptionalText(object->description()) : std::nullopt));
    }
}

AddResult SQLContainer::addWithRenaming(const std::shared_ptr<SQLObjectPeer>& object) {
    if (!object) return {};
    AddResult result{false, object->getName()};
    if (object.get() == this || (as<SQLField>(object.get()) && !_allowsFieldObjects)) return result;
    if (const auto* info = as<SQLDocumentInfo>(object.get())) {
        setDocumentInfo(*info);
        return result;
    }
    const auto locks = lockedWithHolders({this}, [&] { return std::array{object}; });
    if (contains(*object)) return result;
    try {
        if (object->asContainer()) refuse(object.get());
        const std::string name = object->getName();
        if (SQLObjectPeer* existing = getObjectByName(name, false)) {
            const std::string freeName = getValidName(name);
            if (as<SQLComment>(existing))
                existing->setName(freeName);  // a comment makes way
            else
                object->setName(freeName);
        }
        addObjectToContainer(object, result);
    } catch (const SQLException& error) {
        log(text("AddWithRenaming: error adding field %@", error.reason()));
    }
    return result;
}

bool SQLContainer::addObjectToContainer(const std::shared_ptr<SQLObjectPeer>& object, AddResult& result) {
    result = {false, object ? object->getName() : std::string()};
    if (!object || object->asContainer()) return true;
    if (const auto* info = as<SQLDocumentInfo>(object.get())) {
        setDocumentInfo(*info);
        return true;
    }
    const auto locks = lockedWithHolders({this}, [&] { return std::array{object}; });
    auto list = lockedList();
    if (list->contains(*object)) return true;
    std::size_t index = list->size();
    object->checkUid(*this);
    std::int64_t zorder = -1;
    if (object->hasProperty(keys::zorder)) {
        zorder = integerValue(object->getProperty(keys::zorder));
        object->removeProperty(keys::zorder);
        if (zorder >= 0) index = static_cast<std::size_t>(zorder);
    }
    _zorderArray.lock()->place(*object, zorder);
    list->insert(std::min(index, list->size()), object);
    _foreignKeyNames.note(*object);
    addUidForObject(*object);
    _lastObjectAdded = object.get();
    adopt(*object);
    updateZOrder();
    _objectLabelManager->addObjectToLabelList(*object);
    updateSchemaForObject(*object);
    result = {true, object->getName()};
    return true;
}

void SQLContainer::adopt(SQLObjectPeer& object) {
    SQLObject* holder = object.container();
    if (holder == this) return;
    if (_isTempContainer) return watchGuest(object);
    // What it changes from now on it reports here; the document that it came from may list it still.
    if (SQLContainer* previous = holder ? holder->asContainer() : nullptr) previous->watchGuest(object);
    if (_guests) _guests->remove(object);
    object.setContainer(this);
}

void SQLContainer::release(SQLObjectPeer& object) {
    if (_guests) _guests->remove(object);
    if (object.container() != this) return;
    if (_isTempContainer)
        _departed.emplace_back(shared(&object));
    else
        object.setContainer(nullptr);
}

void SQLContainer::watchGuest(SQLObject& object) {
    auto list = _objectList.lock();
    if (!_guests) _guests = std::make_unique<GuestWatch>(*this);
    _guests->add(object);
}

void SQLContainer::setDocumentInfo(const SQLDocumentInfo& info) {
    if (&info != _documentInfo.get()) {
        _documentInfo->properties()->removeAllObjects();
        if (info.properties()) _documentInfo->properties()->addEntriesFromPropertyDictionary(*info.properties());
        _documentInfo->setEncodedPrintInfo(info.encodedPrintInfo());
    }
    _documentInfo->setContainer(this);
    updateExportDialect();
}

// --- removing

void SQLContainer::remove(SQLObjectPeer& object) {
    const auto keptAlive = object.shared_from_this();
    auto list = lockedList();
    list->remove(object);
    ForeignKeyNames::noteLoss();
    removeUidForObject(object);
    release(object);
    _zorderArray.lock()->remove(object);
    _objectLabelManager->removeObjectFromLabelList(object, true);
    removeObjectFromSchema(object);
}

void SQLContainer::removeAll() {
    auto list = lockedList();
    const Objects removed = list->snapshot();
    list->clear();
    _foreignKeyNames.forget();
    _uidList.lock()->clear();
    const Stacking stacking = std::exchange(*_zorderArray.lock(), {});
    for (const auto& object : removed) release(*object);
    for (const auto& [address, object] : stacking.owned) release(*object);
    _objectLabelManager->removeAllLabels();
    for (const auto& schema : schemaList()) schema->setObjectList({});
    removeAllSchema();
}

// --- lists and counts

SQLContainer::Objects SQLContainer::objectList() const { return _objectList.lock()->snapshot(); }

void SQLContainer::setObjects(Objects objects) {
    auto list = lockedList();
    const Objects previous = list->snapshot();
    std::erase(objects, nullptr);
    std::erase_if(objects, [](const auto& object) { return object->asContainer() != nullptr; });
    list->assign(objects);
    _foreignKeyNames.forget();
    for (const auto& object : previous)
        if (_guests && !list->contains(*object)) _guests->remove(*object);
    for (const auto& object : objects)
        if (object->container() != this) watchGuest(*object);
}

std::size_t SQLContainer::count() const { return _objectList.lock()->size(); }

bool SQLContainer::contains(const SQLObject& object) const { return _objectList.lock()->contains(object); }

std::size_t SQLContainer::countOfObjectOfClass(std::string_view classType) const {
    std::size_t count = 0;
    auto list = _objectList.lock();
    list->forEach([&](const auto& object) { count += object->getClassType() == classType; });
    return count;
}

SQLContainer::Objects SQLContainer::objectsOfClass(std::string_view classType) const {
    Objects objects = objectList();
    std::erase_if(objects, [&](const auto& object) { return object->getClassType() != classType; });
    return objects;
}

SQLContainer::Objects SQLContainer::reverseObjectList() const {
    Objects objects = objectList();
    std::ranges::reverse(objects);
    return objects;
}

std::vector<std::shared_ptr<SQLObject>> SQLContainer::flatObjectList() {
    std::vector<std::shared_ptr<SQLObject>> flat;
    for (const auto& object : objectListSortedByName())
        std::ranges::move(object->flatObjectList(), std::back_inserter(flat));
    return flat;
}

SQLObjectPeer* SQLContainer::firstElement() const {
    auto list = _objectList.lock();
    return list->size() ? list->at(0).get() : nullptr;
}

bool SQLContainer::firstObjectIsTable() const { return as<SQLTable>(firstElement()) != nullptr; }

SQLObjectPeer* SQLContainer::getNextObject(const SQLObject& object) const {
    auto list = _objectList.lock();
    const std::size_t position = list->position(object);
    return position == ObjectList::kAbsent ? nullptr : list->at((position + 1) % list->size()).get();
}

SQLObjectPeer* SQLContainer::getPreviousObject(const SQLObject& object) const {
    auto list = _objectList.lock();
    const std::size_t position = list->position(object);
    return position == ObjectList::kAbsent ? nullptr : list->at((position + list->size() - 1) % list->size()).get();
}

// --- geometry

Point SQLContainer::origin() const {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    Point origin{infinity, infinity};
    auto list = _objectList.lock();
    list->forEach([&](const auto& object) {
        const Point location = object->getLocation();
        origin = {std::min(origin.x, location.x), std::min(origin.y, location.y)};
    });
    return origin;
}

Rect SQLContainer::minimumRectForContainer() const {
    Rect rect;
    auto list = _objectList.lock();
    list->forEach([&](const auto& object) { rect = unionRect(rect, object->frame()); });
    return rect;
}

void SQLContainer::relocateAll(Point offset) {
    auto list = _objectList.lock();
    for (const auto& object : list->snapshot()) object->relocateToOrigin(offset.x, offset.y);
}

void SQLContainer::relocateAllToBase(Point base) { relocateAll({-base.x, -base.y}); }

// --- merging and loading

void SQLContainer::merge(SQLContainer& other, bool /*flag*/) {
    if (&other == this) return;
    const auto locks = lockedWithHolders({this, &other}, [&] { return other.objectList(); });
    other.postLoadProcess();
    const Objects merged = other.objectList();
    for (const auto& object : merged) object->checkUid(*this);
    for (const auto& object : merged) object->updateLinksWithNewUid();
    other.postLoadProcess();
    for (const auto& object : merged) {
        add(object);
        _objectLabelManager->updateLabelListFromItemMerged(*object);
    }
    for (const auto& object : objectList()) {
        if (!object->getPropertyAsBoolean(keys::incompleteReferenceTarget)) continue;
        if (const auto* table = as<SQLTable>(object.get()))
            for (const auto& component : table->getFields())
                if (component->getPropertyAsBoolean(keys::incompleteReferenceTarget))
                    component->reconnectIncompleteReference();
        object->removeProperty(keys::incompleteReferenceTarget);
    }
}

void SQLContainer::postLoadProcess() {
    {
        auto list = lockedList();
        for (const auto& object : list->snapshot()) object->postLoadProcess();
    }
    _objectLabelManager->postLoadProcess();
}

SQLObjectPeer* SQLContainer::lastObjectAdded() const {
    auto list = _objectList.lock();
    return _lastObjectAdded.get();
}

void SQLContainer::setLastObjectAdded(SQLObjectPeer* object) {
    auto list = _objectList.lock();
    _lastObjectAdded = object;
}

void SQLContainer::setFkObjectGraph(std::shared_ptr<SQLForeignKeyObjectGraph> graph) {
    if (graph != _fkObjectGraph) detach(_fkObjectGraph.get(), *this);
    _fkObjectGraph = std::move(graph);
}

void SQLContainer::setObjectLabelManager(std::shared_ptr<SQLObjectLabelManager> manager) {
    if (!manager || manager == _objectLabelManager) return;
    detach(_objectLabelManager.get(), *this);
    _objectLabelManager = std::move(manager);
}

namespace {

constexpr Setter kContainerSetters[] = {
    setter<&SQLContainer::setDebug>("debug"),
    setter<&SQLContainer::setAllowsFieldObject>("allowsFieldObject"),
    setter<&SQLContainer::setIsTempContainer>("isTempContainer"),
    ignored("name"),
    ignored("location"),
    ignored("size"),
    ignored("container"),
};

}  // namespace

const ClassInfo SQLContainer::kClassInfo{"SQLContainer", &SQLObjectPeer::kClassInfo, kContainerSetters, nullptr};

}  // namespace vellicor
