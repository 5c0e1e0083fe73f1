// vellicor/model/object.h — the base of every element of a design document.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "vellicor/model/class_info.h"
#include "vellicor/model/forward.h"
#include "vellicor/model/keys.h"
#include "vellicor/model/property_dictionary.h"
#include "vellicor/platform/atomic_property.h"
#include "vellicor/platform/color.h"
#include "vellicor/platform/nullable.h"
#include "vellicor/platform/observing.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/undo.h"
#include "vellicor/platform/value.h"
#include "vellicor/platform/xml_element.h"
#include "vellicor/util/rectangle.h"

namespace vellicor {

/// A node with properties, a uid, a name, a place and size on the canvas, an optional label and a back-reference to
/// what holds it. Make one with `create<T>()`; hold it by shared_ptr.
///
/// Setters that say "undoable" register their inverse with `undoManager()`, so only on the main thread.
class SQLObject : public Loadable, public std::enable_shared_from_this<SQLObject> {
public:
    using UndoProperties = std::vector<std::string_view>;

    explicit SQLObject(Creation) {}
    ~SQLObject() override;
    SQLObject(const SQLObject&) = delete;
    SQLObject& operator=(const SQLObject&) = delete;
    /// The second step of construction: the property dictionary and a fresh uid.
    virtual void init();

    // --- identifier
    virtual void createNewUid();
    virtual void resetUid() { createNewUid(); }
    /// Gives this object a fresh uid when `container` already uses its present one.
    virtual void checkUid(SQLContainer& container);
    [[nodiscard]] std::string uid() const { return getProperty(keys::uid); }
    [[nodiscard]] std::string getUid() const { return uid(); }
    /// Tells the container, then stores. Always true.
    bool setUid(const std::string& uid);
    /// Rewrites stored references after uids changed.
    virtual void updateLinksWithNewUid() {}

    // --- properties (all locked by the dictionary)
    /// The value as text; the empty text for an absent key, never null.
    [[nodiscard]] virtual std::string getProperty(std::string_view key) const;
    /// Logs and changes nothing for a null key or a null value, and for a key that a document could not give back: the
    /// name of a class, or of something else that the object reads from documents. Asserts "Properties should not be
    /// nil".
    void setProperty(Nullable<std::string_view> key, Nullable<PropertyValue> value);
    void setPropertyValue(Nullable<PropertyValue> value, Nullable<std::string_view> key);
    [[nodiscard]] bool hasProperty(std::string_view key) const;
    void removeProperty(std::string_view key);
    /// Stores "1" or "0".
    void setPropertyAsBoolean(std::string_view key, bool flag);
    void setPropertyAsBoolean(std::string_view key, const char*) = delete;
    /// True for texts that begin, after white space, a sign and zeros, with Y, T (either case) or a digit 1 to 9.
    [[nodiscard]] bool getPropertyAsBoolean(std::string_view key) const;
    /// Null only before `init`.
    [[nodiscard]] QVMutableNotifyingPropertyDictionary* properties() const { return _properties.get(); }
    [[nodiscard]] QVMutableNotifyingPropertyDictionary* getProperties() const { return _properties.get(); }
    [[nodiscard]] QVMutableNotifyingPropertyDictionary::Snapshot propertiesAsDictionary() const;
    /// Merges entries in, without hooks or announcements; keys that `setProperty` refuses are left out with a line.
    void setProperties(const QVMutableNotifyingPropertyDictionary::Snapshot& entries);
    /// Undoable whatever the key.
    void setUndoableProperty(std::string_view key, Nullable<PropertyValue> value);
    void removeUndoableProperty(Nullable<std::string_view> key);
    /// Called by the dictionary before a change; null stands for absent. Registers the inverse of changes to the keys
    /// of `undoProperties`.
    virtual void propertyWillChange(std::string_view key, const PropertyValue* current, const PropertyValue* next);
    virtual void propertyDidChange(std::string_view /*key*/) {}
    /// Entries came in by a bulk merge.
    virtual void propertiesWereMerged() {}
    /// Keys whose every change is undoable. Each class has its own list; `classUndoProperties` answers the one of the
    /// object's class.
    static const UndoProperties& undoProperties();
    [[nodiscard]] virtual const UndoProperties& classUndoProperties() const { return undoProperties(); }
    virtual void setComment(const OptionalText& comment);
    [[nodiscard]] virtual std::string getComment() const { return getProperty(keys::objectComment); }

    // --- label
    /// Undoable, "set label". Null removes the label and its three properties.
    virtual void setLabel(std::shared_ptr<SQLObjectLabel> label);
    [[nodiscard]] const std::shared_ptr<SQLObjectLabel>& label() const { return _label; }
    [[nodiscard]] std::int32_t labelIndex() const;
    void setLabelIndex(std::uint64_t index);
    [[nodiscard]] virtual Color defaultLabelColor() const { return Color::clear(); }
    [[nodiscard]] virtual bool useNewColoring() const { return false; }

    // --- name
    /// Undoable, "set object name".
    virtual void setName(const OptionalText& name);
    /// Null until set.
    [[nodiscard]] const OptionalText& name() const { return _name; }
    /// The name, or the empty text when none.
    [[nodiscard]] virtual std::string getName() const { return _name.value_or(std::string()); }
    [[nodiscard]] virtual std::string getBaseName() const { return _name.value_or(std::string()); }
    [[nodiscard]] virtual std::string displayName() const { return _name.value_or(std::string()); }
    virtual void setDisplayName(const OptionalText& name) { setName(name); }
    [[nodiscard]] virtual std::string getSchemaName() const { return {}; }
    static bool canUseSchemaName() { return false; }
    [[nodiscard]] virtual bool classCanUseSchemaName() const { return canUseSchemaName(); }
    /// A name typed but not committed; null when none. Safe from any thread.
    [[nodiscard]] OptionalText displayNamePending() const { return _displayNamePending.get(); }
    void setDisplayNamePending(const OptionalText& name) { _displayNamePending.set(name); }

    // --- geometry (canvas points)
    [[nodiscard]] virtual Point location() const { return _location; }
    [[nodiscard]] virtual Point getLocation() const { return location(); }
    virtual void setLocation(Point location);
    [[nodiscard]] virtual Size size() const { return _size; }
    [[nodiscard]] virtual Size getSize() const { return size(); }
    virtual void setSize(Size size);
    [[nodiscard]] Rect frame() const { return {location(), size()}; }
    void setFrame(Rect frame);
    /// Writes both without the overridable setters.
    void setFrameWithoutUpdate(Rect frame);
    void setLocationFromObject(const SQLPoint& point);
    void setSizeFromObject(const SQLSize& size);
    virtual void relocateToOrigin(double dx, double dy);
    /// Safe from any thread.
    [[nodiscard]] Size minimumSize() const { return _minimumSize.get(); }
    void setMinimumSize(Size size) { _minimumSize.set(size); }

    // --- tree
    virtual void setContainer(SQLObject* container) { _container.store(container, std::memory_order_release); }
    void setParent(SQLObject* parent) { setContainer(parent); }
    /// What holds this object: a component's table, a peer's document; null while detached.
    [[nodiscard]] virtual SQLObject* container() const { return _container.load(std::memory_order_acquire); }
    [[nodiscard]] SQLObject* getContainer() const { return container(); }
    [[nodiscard]] SQLObject* parent() const { return container(); }
    /// The document; null while detached from one.
    [[nodiscard]] virtual SQLContainer* topLevelContainer() const;
    [[nodiscard]] virtual SQLTable* parentTable() const { return nullptr; }
    /// This object when it is a document.
    [[nodiscard]] virtual SQLContainer* asContainer() { return nullptr; }

    // --- undo
    /// Null when the class refuses undo, off the main thread, and when nobody gave one: the container's while there is
    /// one, else the object's own.
    [[nodiscard]] UndoManager* undoManager() const;
    void setUndoManager(std::shared_ptr<UndoManager> undoManager) { _undoManager = std::move(undoManager); }
    [[nodiscard]] virtual bool supportsUndo() const { return true; }

    // --- observing
    /// Keys: "properties", "frame", "location", "size", "name", "displayName" and those that subclasses name. Of "uid"
    /// there is a did-change only, whichever way it came. An observer is not kept alive: it must be removed before it
    /// goes, or be registered by `observe`, whose guard does that.
    void addObserver(KeyObserver& observer, std::string_view key) { _observers.add(observer, key); }
    void removeObserver(const KeyObserver& observer, std::string_view key) { _observers.remove(observer, key); }
    [[nodiscard]] Observation observe(KeyObserver& observer, std::string_view key) {
        return _observers.observe(observer, key);
    }
    void willChangeValueForKey(std::string_view key) const { _observers.willChange(this, key); }
    void didChangeValueForKey(std::string_view key) const { _observers.didChange(this, key); }

    // --- document, SQL, JSON
    void setSafePropertyValue(const LoadedValue& value, std::string_view key) override;
    /// The line of the document at which the object's element begins; 0 when it was not read from one.
    [[nodiscard]] std::int32_t sourceLine() const { return _sourceLine; }
    void setSourceLine(std::int32_t line) { _sourceLine = line; }
    /// Called once on every object after a document was read.
    virtual void postLoadProcess() {}
    /// The object's element, appended to `parent` when there is one.
    virtual XMLElement exportToXMLNode(const XMLElement* parent = nullptr) const;
    /// One child element an entry, keys sorted without regard to case; in-memory keys and empty texts are left out.
    virtual void exportPropertiesToXMLNode(const XMLElement& node) const;
    /// The properties inside a "properties" element, as text.
    [[nodiscard]] std::string exportPropertiesToXML() const;
    void exportLocationToXMLNode(const XMLElement& node) const;
    /// The element, pretty-printed.
    [[nodiscard]] virtual std::string exportToXML() const;
    /// The text as one CDATA section, every "]]>" in it made "]-]>"; null gives the empty text.
    [[nodiscard]] std::string quoteForXML(const OptionalText& text) const;
    [[nodiscard]] virtual std::string exportToSQL() { return {}; }
    /// This object and what it holds, itself first.
    [[nodiscard]] virtual std::vector<std::shared_ptr<SQLObject>> flatObjectList();
    [[nodiscard]] virtual std::int64_t zOrder() const { return 0; }
    /// The name of the model class; what exporters dispatch by.
    [[nodiscard]] virtual std::string_view getClassType() const { return "SQLObject"; }
    [[nodiscard]] virtual Value::Map jsonDictionary() const;
    [[nodiscard]] std::string json() const;
    /// For logs: the class and address, a blank, and the name.
    [[nodiscard]] virtual std::string description() const;
    /// An object of the same class with the same name, label, properties (the uid included), frame, and no container.
    [[nodiscard]] virtual std::shared_ptr<SQLObject> copyWithZone(void* zone = nullptr) const;
    /// An empty object of the same class.
    [[nodiscard]] virtual std::shared_ptr<SQLObject> newInstance() const { return create<SQLObject>(); }

    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;

    // --- what holders are told by the objects they hold
    /// A held object is about to take another uid.
    virtual void uidChanged(std::string_view /*newUid*/, SQLObject& /*object*/) {}
    /// A held object took another uid, also through its properties.
    virtual void memberUidDidChange(SQLObject& /*member*/) {}
    /// A held object took another name or schema.
    virtual void memberNameDidChange(SQLObject& /*member*/) {}

protected:
    /// Registers `inverse(self)` with the undo manager; nothing without one. Arguments that the closure holds stay
    /// alive, `self` does not.
    template <class Self, class Inverse>
    void registerUndo(Self* self, Inverse inverse) {
        if (UndoManager* manager = undoManager())
            manager->registerUndo(weak_from_this(), [self, inverse = std::move(inverse)] { inverse(*self); });
    }
    void setUndoActionName(std::string_view name) const;
    /// Stores the name and tells observers and the holder; no undo.
    void storeName(const OptionalText& name);
    /// The map of `jsonDictionary` entry "properties".
    [[nodiscard]] Value propertiesAsJson() const;
    [[nodiscard]] std::string runtimeDescription() const;

private:
    friend class QVMutableNotifyingPropertyDictionary;
    void uidWasStored();
    [[nodiscard]] bool takesKey(std::string_view key) const;

    std::unique_ptr<QVMutableNotifyingPropertyDictionary> _properties;  // null before `init`
    std::atomic<SQLObject*> _container = nullptr;                       // never owned; cleared by the holder
    Point _location;
    OptionalText _name;  // null until set
    Size _size;
    std::shared_ptr<SQLObjectLabel> _label;     // null when none
    std::shared_ptr<UndoManager> _undoManager;  // used only while there is no container
    AtomicProperty<OptionalText> _displayNamePending;
    AtomicProperty<Size> _minimumSize;
    KeyObserverList _observers;
    std::int32_t _sourceLine = 0;  // 0: not read from a document
    bool _initialising = true;     // until the end of `init`
};

/// A typed copy.
template <class T>
[[nodiscard]] std::shared_ptr<T> copyOf(const T& object) {
    return std::dynamic_pointer_cast<T>(object.copyWithZone());
}

/// `object` as the shared pointer that owns it.
template <class T>
[[nodiscard]] std::shared_ptr<T> shared(T* object) {
    return object ? std::shared_ptr<T>(object->shared_from_this(), object) : nullptr;
}

}  // namespace vellicor
