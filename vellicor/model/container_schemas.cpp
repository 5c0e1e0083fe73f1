// vellicor/model/container_schemas.cpp — the schemas of a document and the objects in them.
#include <algorithm>

#include "vellicor/model/container.h"
#include "vellicor/model/schema.h"
#include "vellicor/model/table.h"

namespace vellicor {

void SQLContainer::addSchema(std::shared_ptr<SQLSchema> schema) {
    auto list = _objectList.lock();
    if (!schema || _schemaList.contains(*schema)) return;
    registerUndo(this, [schema](SQLContainer& container) { container.removeSchema(schema); });
    setUndoActionName("add schema");
    _schemaList.add(schema);
}

void SQLContainer::removeSchema(std::shared_ptr<SQLSchema> schema) {
    auto list = _objectList.lock();
    // A schema that loses its last object is swept away, which must not begin its removal once more.
    if (!schema || !_schemaList.contains(*schema) || schema->_isBeingRemoved) return;
    schema->_isBeingRemoved = true;
    for (SQLObject* object : schema->objectList())
        if (auto* table = as<SQLTable>(object)) table->setSchema(_defaultSchema->getName());
    registerUndo(this, [schema](SQLContainer& container) { container.addSchema(schema); });
    setUndoActionName("delete schema");
    _schemaList.remove(*schema);
    schema->_isBeingRemoved = false;
}

void SQLContainer::removeEmptySchema() {
    auto list = _objectList.lock();
    auto isSwept = [this](const SQLSchema& schema) {
        return schema.isEmpty() && &schema != _defaultSchema.get() && !schema.isDefault() && !schema._isBeingRemoved;
    };
    if (std::ranges::none_of(_schemaList.empty(), [&](const SQLSchema* schema) { return isSwept(*schema); })) return;
    const auto schemas = schemaList();
    for (const auto& schema : schemas)
        if (isSwept(*schema)) removeSchema(schema);
}

void SQLContainer::removeAllSchema() {
    auto list = _objectList.lock();
    const auto schemas = schemaList();
    for (const auto& schema : schemas)
        if (schema != _defaultSchema && !schema->isDefault() && schema->autoDeleteWhenEmpty())
            _schemaList.remove(*schema);
}

std::shared_ptr<SQLSchema> SQLContainer::schemaForName(std::string_view name) {
    auto list = _objectList.lock();
    if (auto schema = _schemaList.named(name)) return schema;
    auto schema = SQLSchema::schemaWithName(std::string(name));
    _schemaList.add(schema);
    return schema;
}

SQLContainer::Objects SQLContainer::objectsWithSchema(const SQLSchema& schema) const {
    auto list = _objectList.lock();
    Objects objects;
    for (SQLObject* object : schema.objectList())
        if (auto* peer = as<SQLObjectPeer>(object)) objects.push_back(shared(peer));
    return objects;
}

void SQLContainer::updateSchemaForObject(SQLObject& object) {
    const auto* table = as<SQLTable>(&object);
    if (!table) return;
    auto list = _objectList.lock();
    const std::string name = table->getSchemaName();
    const auto schema = name.empty() ? _defaultSchema : schemaForName(name);
    schema->addObject(object);
    removeObjectFromSchema(object, schema.get());
}

void SQLContainer::removeObjectFromSchema(SQLObject& object) { removeObjectFromSchema(object, nullptr); }

void SQLContainer::removeObjectFromSchema(SQLObject& object, const SQLSchema* exceptSchema) {
    auto list = _objectList.lock();
    for (SQLSchema* schema : _schemaList.holding(object))
        if (schema != exceptSchema) schema->removeObject(object);
    removeEmptySchema();
}

}  // namespace vellicor
