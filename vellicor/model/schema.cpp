// vellicor/model/schema.cpp — schemas and the register that a document keeps of them.
#include "vellicor/model/schema.h"

#include <algorithm>

#include "vellicor/model/schema_register.h"
#include "vellicor/model/table.h"

namespace vellicor {

std::shared_ptr<SQLSchema> SQLSchema::unspecifiedSchema() {
    auto schema = schemaWithName("");
    schema->setIsDefault(true);
    schema->setIsUnspecifiedSchema(true);
    return schema;
}

std::shared_ptr<SQLSchema> SQLSchema::schemaWithName(const OptionalText& name) {
    auto schema = create<SQLSchema>();
    schema->setName(name);
    return schema;
}

std::string SQLSchema::displayName() const { return _isUnspecifiedSchema ? "(none)" : getName(); }

void SQLSchema::setName(const OptionalText& name) {
    const auto self = shared_from_this();  // giving its objects away may take the schema out of its document
    SQLObject::setName(name);
    for (SchemaRegister* schemas : _registers) schemas->nameDidChange();
    for (SQLObject* object : objectList())
        if (auto* table = as<SQLTable>(object)) table->setSchema(name);
}

std::vector<SQLObject*> SQLSchema::objectList() const {
    std::vector<SQLObject*> objects;
    objects.reserve(_objects.size());
    for (const auto& object : _objects) objects.push_back(object.get());
    return objects;
}

void SQLSchema::setObjectList(const std::vector<SQLObject*>& objects) {
    const auto previous = _objects;  // kept alive until the new ones are in
    for (const auto& object : previous) removeObject(*object);
    for (SQLObject* object : objects) addObject(*object);
}

void SQLSchema::addObject(SQLObject& object) {
    if (containsObject(object)) return;
    _places.emplace(&object, _objects.insert(_objects.end(), object.shared_from_this()));
    for (SchemaRegister* schemas : _registers) schemas->didGain(*this, object);
}

void SQLSchema::removeObject(const SQLObject& object) {
    const auto place = _places.find(&object);
    if (place == _places.end()) return;
    const auto keptAlive = *place->second;
    _objects.erase(place->second);
    _places.erase(place);
    for (SchemaRegister* schemas : _registers) schemas->didLose(*this, object);
}

namespace {

constexpr Setter kSchemaSetters[] = {
    setter<&SQLSchema::setIsDefault>("isDefault"),
    setter<&SQLSchema::setAutoDeleteWhenEmpty>("autoDeleteWhenEmpty"),
    setter<&SQLSchema::setIsUnspecifiedSchema>("isUnspecifiedSchema"),
};

}  // namespace

const ClassInfo SQLSchema::kClassInfo{"SQLSchema", &SQLObject::kClassInfo, kSchemaSetters, makeLoadable<SQLSchema>};

SchemaRegister::~SchemaRegister() {
    for (const auto& schema : _schemas) std::erase(schema->_registers, this);
}

std::shared_ptr<SQLSchema> SchemaRegister::named(std::string_view name) {
    if (!_namesKnown) {
        _byName.clear();
        for (const auto& schema : _schemas) _byName.emplace(schema->getName(), schema);
        _namesKnown = true;
    }
    const auto found = _byName.find(name);
    return found == _byName.end() ? nullptr : found->second;
}

std::vector<SQLSchema*> SchemaRegister::holding(const SQLObject& object) const {
    const auto found = _holding.find(&object);
    return found == _holding.end() ? std::vector<SQLSchema*>() : found->second;
}

void SchemaRegister::add(const std::shared_ptr<SQLSchema>& schema) {
    if (!_members.insert(schema.get()).second) return;
    _schemas.push_back(schema);
    schema->_registers.push_back(this);
    if (_namesKnown) _byName.emplace(schema->getName(), schema);
    if (schema->isEmpty()) _empty.insert(schema.get());
    for (const auto& object : schema->_objects) _holding[object.get()].push_back(schema.get());
}

void SchemaRegister::remove(const SQLSchema& schema) {
    if (!_members.erase(&schema)) return;
    const auto place = std::ranges::find(_schemas, &schema, &std::shared_ptr<SQLSchema>::get);
    const auto keptAlive = *place;
    _schemas.erase(place);
    std::erase(keptAlive->_registers, this);
    _empty.erase(&schema);
    for (const auto& object : keptAlive->_objects) {
        const auto held = _holding.find(object.get());
        std::erase(held->second, keptAlive.get());
        if (held->second.empty()) _holding.erase(held);
    }
    const auto named = _namesKnown ? _byName.find(schema.getName()) : _byName.end();
    if (named == _byName.end() || named->second != keptAlive) return;
    _byName.erase(named);
    // Another of the same name may stand behind it.
    _namesKnown =
        std::ranges::none_of(_schemas, [&](const auto& other) { return other->getName() == schema.getName(); });
}

void SchemaRegister::didGain(SQLSchema& schema, const SQLObject& object) {
    _empty.erase(&schema);
    _holding[&object].push_back(&schema);
}

void SchemaRegister::didLose(SQLSchema& schema, const SQLObject& object) {
    if (schema.isEmpty()) _empty.insert(&schema);
    const auto held = _holding.find(&object);
    std::erase(held->second, &schema);
    if (held->second.empty()) _holding.erase(held);
}

}  // namespace vellicor
