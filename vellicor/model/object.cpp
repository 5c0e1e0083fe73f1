// vellicor/model/object.cpp — identity, properties, name, place and undo of model objects.
#include "vellicor/model/object.h"

#include <algorithm>

#include "vellicor/model/container.h"
#include "vellicor/model/document_names.h"
#include "vellicor/model/label.h"
#include "vellicor/model/label_manager.h"
#include "vellicor/model/value_objects.h"
#include "vellicor/model/whereabouts.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/main_thread.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/platform/uuid.h"

namespace vellicor {

SQLObject::~SQLObject() {
    if (_properties) _properties->setOwnerObject(nullptr);
}

void SQLObject::init() {
    static_cast<void>(isMainThread());  // the thread of the first object is the main thread
    _properties = std::make_unique<QVMutableNotifyingPropertyDictionary>(this);
    createNewUid();
    _initialising = false;
}

// --- identifier

void SQLObject::createNewUid() {
    if (_initialising)
        _properties->promiseUid();  // nobody can know the object yet, so there is nobody to tell
    else
        setUid(newUuidText());
}

void SQLObject::checkUid(SQLContainer& container) {
    if (container.uidInContainer(uid())) createNewUid();
}

bool SQLObject::setUid(const std::string& uid) {
    if (SQLObject* holder = _container) holder->uidChanged(uid, *this);
    setProperty(keys::uid, uid);
    return true;
}

void SQLObject::uidWasStored() {
    if (SQLObject* holder = _container) holder->memberUidDidChange(*this);
    didChangeValueForKey(keys::uid);
}

// --- properties

std::string SQLObject::getProperty(std::string_view key) const {
    return _properties ? _properties->textForKey(key) : std::string();
}

void SQLObject::setProperty(Nullable<std::string_view> key, Nullable<PropertyValue> value) {
    if (!_properties) throw AssertionFailure("Properties should not be nil");
    if (!key)
        log("attempted to set nil key for property");
    else if (!value)
        log(text("attempted to set nil value for property: %@", *key));
    else if (takesKey(*key))
        _properties->setValue(std::move(*value), *key);
}

void SQLObject::setPropertyValue(Nullable<PropertyValue> value, Nullable<std::string_view> key) {
    setProperty(key, std::move(value));
}

bool SQLObject::hasProperty(std::string_view key) const { return _properties && _properties->hasKey(key); }

void SQLObject::removeProperty(std::string_view key) {
    if (_properties) _properties->removeObjectForKey(key);
}

void SQLObject::setPropertyAsBoolean(std::string_view key, bool flag) { setProperty(key, flag ? "1" : "0"); }

bool SQLObject::getPropertyAsBoolean(std::string_view key) const { return boolValue(getProperty(key)); }

QVMutableNotifyingPropertyDictionary::Snapshot SQLObject::propertiesAsDictionary() const {
    return _properties ? _properties->entries() : QVMutableNotifyingPropertyDictionary::Snapshot();
}

void SQLObject::setProperties(const QVMutableNotifyingPropertyDictionary::Snapshot& entries) {
    if (!_properties) return;
    auto taken = entries;
    std::erase_if(taken, [this](const auto& entry) { return !takesKey(entry.first); });
    _properties->addEntriesFromDictionary(taken);
}

bool SQLObject::takesKey(std::string_view key) const {
    const Setter* setter = classInfo().setterFor(key);
    if (!setter || setter->storesProperty) {
        if (!namesObjectInDocuments(XMLElement::nameFor(key))) return true;
    }
    log(text("refused property %@ of %@: in documents the name stands for something else", key, whereabouts(*this)));
    return false;
}

void SQLObject::setUndoableProperty(std::string_view key, Nullable<PropertyValue> value) {
    std::optional<PropertyValue> current;
    if (_properties) current = _properties->valueForKey(key);
    registerUndo(this, [key = std::string(key), current = std::move(current)](SQLObject& self) {
        if (current)
            self.setUndoableProperty(key, current);
        else
            self.removeUndoableProperty(key);
    });
    setProperty(key, std::move(value));
}

void SQLObject::removeUndoableProperty(Nullable<std::string_view> key) {
    if (!key) return;
    registerUndo(this, [key = std::string(*key), current = getProperty(*key)](SQLObject& self) {
        self.setUndoableProperty(key, current);
    });
    removeProperty(*key);
}

void SQLObject::propertyWillChange(std::string_view key, const PropertyValue* current, const PropertyValue* /*next*/) {
    const UndoProperties& undoable = classUndoProperties();
    if (std::find(undoable.begin(), undoable.end(), key) == undoable.end() || !undoManager()) return;
    registerUndo(this,
                 [key = std::string(key), current = current ? std::optional(*current) : std::nullopt](SQLObject& self) {
                     if (current)
                         self.setProperty(key, current);
                     else
                         self.removeProperty(key);
                 });
}

const SQLObject::UndoProperties& SQLObject::undoProperties() {
    static const UndoProperties list{keys::hidden};
    return list;
}

void SQLObject::setComment(const OptionalText& comment) { setProperty(keys::objectComment, comment); }

// --- label

void SQLObject::setLabel(std::shared_ptr<SQLObjectLabel> label) {
    registerUndo(this, [old = _label](SQLObject& self) { self.setLabel(old); });
    setUndoActionName("set label");
    _label = std::move(label);
    if (_label) {
        setProperty(keys::labelName, _label->name());  // logs a label without a name and leaves what is there
        setProperty(keys::labelColor, _label->color().string());
        setProperty(keys::labelUid, _label->uid());
    } else {
        removeProperty(keys::labelName);
        removeProperty(keys::labelColor);
        removeProperty(keys::labelUid);
    }
    SQLContainer* document = container() ? container()->asContainer() : nullptr;  // only a document keeps labels
    if (document && document->objectLabelManager()) document->objectLabelManager()->updateLabelListForObject(*this);
}

std::int32_t SQLObject::labelIndex() const { return intValue(getProperty(keys::labelWindowIndex)); }

void SQLObject::setLabelIndex(std::uint64_t index) { setProperty(keys::labelWindowIndex, text("%lu", index)); }

// --- name

void SQLObject::setName(const OptionalText& name) {
    registerUndo(this, [old = _name](SQLObject& self) { self.setName(old); });
    setUndoActionName("set object name");
    storeName(name);
}

void SQLObject::storeName(const OptionalText& name) {
    willChangeValueForKey("name");
    willChangeValueForKey("displayName");
    const bool differs = _name != name;
    if (differs) _name = name;
    didChangeValueForKey("displayName");
    didChangeValueForKey("name");
    if (SQLObject* holder = differs ? _container.load() : nullptr) holder->memberNameDidChange(*this);
}

// --- geometry

void SQLObject::setLocation(Point location) {
    willChangeValueForKey("location");
    willChangeValueForKey("frame");
    _location = location;
    didChangeValueForKey("frame");
    didChangeValueForKey("location");
}

void SQLObject::setSize(Size size) {
    willChangeValueForKey("size");
    willChangeValueForKey("frame");
    _size = size;
    didChangeValueForKey("frame");
    didChangeValueForKey("size");
}

void SQLObject::setFrame(Rect frame) {
    setLocation(frame.origin);
    setSize(frame.size);
}

void SQLObject::setFrameWithoutUpdate(Rect frame) {
    _location = frame.origin;
    _size = frame.size;
}

void SQLObject::setLocationFromObject(const SQLPoint& point) { setLocation(point.pointValue()); }

void SQLObject::setSizeFromObject(const SQLSize& size) { setSize(size.sizeValue()); }

void SQLObject::relocateToOrigin(double dx, double dy) {
    const Point old = location();
    setLocation({old.x + dx, old.y + dy});
}

// --- tree and undo

SQLContainer* SQLObject::topLevelContainer() const {
    SQLObject* holder = container();
    if (!holder) return nullptr;
    SQLContainer* document = holder->asContainer();
    return document ? document : holder->topLevelContainer();
}

UndoManager* SQLObject::undoManager() const {
    if (!supportsUndo() || !isMainThread()) return nullptr;
    if (SQLObject* holder = container()) return holder->undoManager();
    return _undoManager.get();
}

void SQLObject::setUndoActionName(std::string_view name) const {
    if (UndoManager* manager = undoManager()) manager->setActionName(localizedActionName(name));
}

}  // namespace vellicor
