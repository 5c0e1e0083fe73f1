// vellicor/model/foreign_key_entry.cpp — one column pair of a foreign key.
#include <typeinfo>

#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

std::shared_ptr<SQLForeignKeyEntry> SQLForeignKeyEntry::initWithSource(SQLField* source, SQLField* target) {
    auto entry = create<SQLForeignKeyEntry>();
    entry->_source = shared(source);
    entry->_target = shared(target);
    return entry;
}

SQLContainer* SQLForeignKeyEntry::topLevelContainer() const {
    const SQLForeignKey* key = foreignKey();
    return key ? key->topLevelContainer() : nullptr;
}

SQLForeignKey* SQLForeignKeyEntry::foreignKey() const { return as<SQLForeignKey>(container()); }

void SQLForeignKeyEntry::setSource(SQLField* source) { setSide(&SQLForeignKeyEntry::_source, source); }

void SQLForeignKeyEntry::setTarget(SQLField* target) { setSide(&SQLForeignKeyEntry::_target, target); }

void SQLForeignKeyEntry::setSide(Side side, SQLField* column) {
    registerUndo(this, [side, old = this->*side](SQLForeignKeyEntry& entry) { entry.setSide(side, old.get()); });
    const SQLForeignKey* key = foreignKey();
    if (key) key->willChangeValueForKey("fieldPairList");
    this->*side = shared(column);
    if (key) key->didChangeValueForKey("fieldPairList");
}

void SQLForeignKeyEntry::setTargetByName(const OptionalText& name) { setProperty(keys::targetFieldName, name); }

void SQLForeignKeyEntry::setSourceFromUid(const SQLTable& table, std::string_view uid) {
    setSideFromUid(&SQLForeignKeyEntry::_source, table, uid);
}

void SQLForeignKeyEntry::setTargetFromUid(const SQLTable& table, std::string_view uid) {
    setSideFromUid(&SQLForeignKeyEntry::_target, table, uid);
}

void SQLForeignKeyEntry::setSideFromUid(Side side, const SQLTable& table, std::string_view uid) {
    if (uid == "-") {
        setSide(side, nullptr);
        return;
    }
    SQLTableComponent* found = table.getFieldByUID(uid);
    if (found && typeid(*found) == typeid(SQLField)) setSide(side, as<SQLField>(found));
}

std::string SQLForeignKeyEntry::description() const {
    std::string description = SQLObject::description();
    if (_source) description += _source->getName();
    if (_target)
        description += text(" -> %@ [by ref] ", _target->getName());
    else if (hasProperty(keys::targetFieldName))
        description += text(" ->  %@ [by name]", getProperty(keys::targetFieldName));
    return description;
}

namespace {

constexpr Setter kForeignKeyEntrySetters[] = {
    setter<&SQLForeignKeyEntry::setTargetByName>("targetByName"),
};

}  // namespace

const ClassInfo SQLForeignKeyEntry::kClassInfo{"SQLForeignKeyEntry", &SQLObject::kClassInfo, kForeignKeyEntrySetters,
                                               makeLoadable<SQLForeignKeyEntry>};

}  // namespace vellicor
