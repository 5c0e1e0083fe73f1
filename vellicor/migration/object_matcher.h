// vellicor/migration/object_matcher.h — which object of one document is which object of another.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "vellicor/model/container.h"
#include "vellicor/model/table.h"

namespace vellicor {

/// What makes two objects the same one.
enum class MatchMode {
    Automatic,  ///< the uid; for objects without a partner the name
    Uid,
    Name,
};

/// An object of the old document and the one that it became. Either is null for an object that only one document has.
struct ObjectMatch {
    SQLObject* before = nullptr;
    SQLObject* after = nullptr;
    bool byName = false;  ///< no uid said so
};

/// The matches of two documents, which must live as long as this and must not change meanwhile. Only objects of one
/// class match, and components only in tables that match. Names are compared qualified, without regard to case.
class ObjectMatcher {
public:
    ObjectMatcher(const SQLContainer& before, const SQLContainer& after, MatchMode mode = MatchMode::Automatic);

    /// The documents' objects: those of the new document in its order, then those that are gone in the old order.
    [[nodiscard]] const std::vector<ObjectMatch>& objects() const { return _objects; }
    /// The components of two matching tables in the same order.
    [[nodiscard]] std::vector<ObjectMatch> components(const SQLTable& before, const SQLTable& after) const;
    /// What an object of the old document became; null when it is gone.
    [[nodiscard]] SQLObject* successorOf(const SQLObject& before) const;

private:
    using Objects = std::vector<SQLObject*>;
    [[nodiscard]] std::vector<ObjectMatch> matchesOf(const Objects& before, const Objects& after) const;

    MatchMode _mode;
    std::vector<ObjectMatch> _objects;
    std::unordered_map<const SQLObject*, SQLObject*> _successors;
};

/// "table", "column", "index" and so on: what people call an object of this class.
[[nodiscard]] std::string kindOfObject(const SQLObject& object);
/// A component with its table in front, "orders.total"; everything else by its qualified name.
[[nodiscard]] std::string pathOfObject(const SQLObject& object);

}  // namespace vellicor
