// vellicor/model/schema.h — a database schema that groups objects of a document.
#pragma once

#include <list>
#include <unordered_map>

#include "vellicor/model/object.h"

namespace vellicor {

class SchemaRegister;

/// Objects are listed in the order of their arrival; membership is found without searching.
class SQLSchema : public SQLObject {
public:
    using SQLObject::SQLObject;
    /// The schema of objects that name none: empty name, default, shown as "(none)".
    static std::shared_ptr<SQLSchema> unspecifiedSchema();
    static std::shared_ptr<SQLSchema> schemaWithName(const OptionalText& name);

    [[nodiscard]] std::string_view getClassType() const override { return "SQLSchema"; }
    [[nodiscard]] std::string displayName() const override;
    /// Gives every object of the schema the new schema name, too.
    void setName(const OptionalText& name) override;

    [[nodiscard]] std::vector<SQLObject*> objectList() const;
    void setObjectList(const std::vector<SQLObject*>& objects);
    [[nodiscard]] bool containsObject(const SQLObject& object) const { return _places.contains(&object); }
    /// Nothing when it is listed already.
    void addObject(SQLObject& object);
    void removeObject(const SQLObject& object);
    [[nodiscard]] bool isEmpty() const { return _objects.empty(); }

    [[nodiscard]] bool isDefault() const { return _isDefault; }
    void setIsDefault(bool flag) { _isDefault = flag; }
    [[nodiscard]] bool autoDeleteWhenEmpty() const { return _autoDeleteWhenEmpty; }
    void setAutoDeleteWhenEmpty(bool flag) { _autoDeleteWhenEmpty = flag; }
    [[nodiscard]] bool isUnspecifiedSchema() const { return _isUnspecifiedSchema; }
    void setIsUnspecifiedSchema(bool flag) { _isUnspecifiedSchema = flag; }

    [[nodiscard]] std::shared_ptr<SQLObject> newInstance() const override { return create<SQLSchema>(); }
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;

private:
    friend class SchemaRegister;
    friend class SQLContainer;

    std::list<std::shared_ptr<SQLObject>> _objects;
    std::unordered_map<const SQLObject*, std::list<std::shared_ptr<SQLObject>>::iterator> _places;
    std::vector<SchemaRegister*> _registers;  // of the documents that list this schema; they clear it
    bool _isDefault = false;
    bool _autoDeleteWhenEmpty = true;
    bool _isUnspecifiedSchema = false;
    bool _isBeingRemoved = false;  // from its document; sweeps pass it over
};

}  // namespace vellicor
