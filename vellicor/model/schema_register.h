// vellicor/model/schema_register.h — a document's schemas in order, found by name and by the objects they list.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "vellicor/model/forward.h"
#include "vellicor/platform/text.h"

namespace vellicor {

/// Told by its schemas of what they gain and lose, so that neither an object's schemas nor empty ones are searched for.
/// No lock.
class SchemaRegister {
public:
    using Schemas = std::vector<std::shared_ptr<SQLSchema>>;

    SchemaRegister() = default;
    ~SchemaRegister();
    SchemaRegister(const SchemaRegister&) = delete;
    SchemaRegister& operator=(const SchemaRegister&) = delete;

    [[nodiscard]] const Schemas& schemas() const { return _schemas; }
    [[nodiscard]] bool contains(const SQLSchema& schema) const { return _members.contains(&schema); }
    /// The first of exactly that name; null when none.
    [[nodiscard]] std::shared_ptr<SQLSchema> named(std::string_view name);
    /// Those that list the object, in no order.
    [[nodiscard]] std::vector<SQLSchema*> holding(const SQLObject& object) const;
    /// Those without objects, in no order.
    [[nodiscard]] const std::unordered_set<const SQLSchema*>& empty() const { return _empty; }

    /// At the end; nothing when it is there already.
    void add(const std::shared_ptr<SQLSchema>& schema);
    void remove(const SQLSchema& schema);

private:
    friend class SQLSchema;
    void didGain(SQLSchema& schema, const SQLObject& object);
    void didLose(SQLSchema& schema, const SQLObject& object);
    void nameDidChange() { _namesKnown = false; }

    Schemas _schemas;
    std::unordered_set<const SQLSchema*> _members;
    std::unordered_set<const SQLSchema*> _empty;
    std::unordered_map<const SQLObject*, std::vector<SQLSchema*>> _holding;
    std::unordered_map<std::string, std::shared_ptr<SQLSchema>, TextHash, std::equal_to<>> _byName;
    bool _namesKnown = true;  // whether `_byName` is up to date
};

}  // namespace vellicor
