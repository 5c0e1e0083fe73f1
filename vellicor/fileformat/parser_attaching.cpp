// vellicor/fileformat/parser_attaching.cpp — finished elements of a document go to what holds them.
#include "vellicor/fileformat/parser.h"
#include "vellicor/model/container.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/object_style.h"
#include "vellicor/model/table.h"
#include "vellicor/model/value_objects.h"
#include "vellicor/model/whereabouts.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

/// An object that was read to its end, and what it stands in.
class ReadObject : public LogSubject {
public:
    ReadObject(const SQLObject& object, const SQLObject* holder) : _object(object), _holder(holder) {}

private:
    [[nodiscard]] std::string description() const override {
        const std::string where = whereabouts(_object);
        return _holder && !as<const SQLContainer>(_holder) ? text("%@, in the %@", where, whereabouts(*_holder))
                                                           : where;
    }

    const SQLObject& _object;
    const SQLObject* _holder;  // null when that is no object
};

}  // namespace

void Parser::addTableComponentToStack(const std::shared_ptr<SQLTableComponent>& component) {
    const Element top = _stack.peek();
    SQLObject* holder = top ? top->modelObject() : nullptr;
    const ReadObject subject(*component, holder);
    if (auto* table = as<SQLTable>(holder)) {
        try {
            table->add(component);
        } catch (const SQLException&) {
            if (!_recovering) throw;
            log(text("recovery mode: may need to rename curObject %@(%@)", table->getName(), component->getName()));
            const std::string before = component->getName();
            table->addWithRenaming(component);
            if (component->getName() != before)
                _changes.push_back(text("the second %@ of its kind became %@", before, whereabouts(*component)));
        }
    } else if (holder && holder == _container && _container->allowsFieldObjects()) {
        _container->add(component);
    } else {
        log("Warning: stray field object found");
    }
}

void Parser::addSQLObjectToStack(const std::shared_ptr<SQLObject>& object) {
    const Element top = _stack.peek();
    if (!top && object.get() == _container) return;
    SQLObject* holder = top ? top->modelObject() : nullptr;
    const ReadObject subject(*object, holder);
    auto style = as<QVObjectStyle>(object);
    if (auto* peer = style ? as<SQLObjectPeer>(holder) : nullptr) {
        peer->setObjectStyle(style);
    } else if (auto* index = as<SQLIndex>(holder)) {
        if (auto entry = as<SQLIndexEntry>(object)) index->addIndexEntry(entry);
    } else if (auto* key = as<SQLForeignKey>(holder)) {
        if (auto entry = as<SQLForeignKeyEntry>(object)) key->addForeignKeyEntry(entry);
    } else if (holder && holder == _container && !style) {
        addToContainer(*_container, object);
    } else {
        // Not the container's own description: that lists all it holds.
        log(text("Incorrect file structure, SQLObject incorrectly nested (not inside SQLContainer) %@",
                 object.get() == _container ? "SQLContainer" : object->description()));
    }
}

void Parser::addToContainer(SQLContainer& container, const std::shared_ptr<SQLObject>& object) {
    try {
        if (object.get() == &container) throw SQLException(exceptions::unknownType, "A document cannot hold itself");
        container.add(object);
    } catch (const SQLException& failure) {
        log(text("attempted to add object failed %@", failure.reason()));
    }
}

namespace {

/// Children of a style speak through their attributes. False when this is no such child.
bool addToStyle(std::string_view name, const QVParserElement& curObject, const QVParserElement& curNode) {
    auto* style = curObject.attributes() ? as<QVObjectStyle>(curNode.modelObject()) : nullptr;
    if (style) style->addProperty(name, *curObject.attributes());
    return style;
}

}  // namespace

void Parser::setFromElement(std::string_view name, const QVParserElement& curObject, QVParserElement& curNode) {
    const SQLObject* holder = curNode.modelObject();
    if (!holder) {
        _usesSafeSetter ? setSafePropertyFromElement(name, curObject, curNode)
                        : setPropertyFromElement(name, curObject, curNode);
        return;
    }
    const ObjectSubject subject(*holder);
    if (!as<const QVObjectStyle>(holder)) noteUnknownElement(name, curObject, *holder);
    try {
        _usesSafeSetter ? setSafePropertyFromElement(name, curObject, curNode)
                        : setPropertyFromElement(name, curObject, curNode);
    } catch (const SQLException& failure) {
        if (!_recovering) throw;
        log(text("recovery mode: left out %@: %@", name, failure.reason()));
        _changes.push_back(
            text("the element \"%@\" of the %@ was left out (%@)", name, whereabouts(*holder), failure.reason()));
    }
}

void Parser::setPropertyFromElement(std::string_view name, const QVParserElement& curObject, QVParserElement& curNode) {
    if (addToStyle(name, curObject, curNode)) return;
    Loadable& target = curNode.target();
    if (const Setter* setter = target.classInfo().setterFor(name))
        setter->apply(target, {curObject.value(), curObject.valueObject()});
    else if (SQLObject* model = curNode.modelObject())
        model->setProperty(name, PropertyValue(curObject.value()));
}

void Parser::setSafePropertyFromElement(std::string_view name, const QVParserElement& curObject,
                                        QVParserElement& curNode) {
    if (addToStyle(name, curObject, curNode)) return;
    curNode.target().setSafePropertyValue({curObject.value(), curObject.valueObject()}, name);
}

}  // namespace vellicor
