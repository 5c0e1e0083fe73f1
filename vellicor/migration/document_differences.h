// vellicor/migration/document_differences.h — what differs between two documents.
#pragma once

#include <string>
#include <vector>

#include "vellicor/migration/object_matcher.h"
#include "vellicor/platform/value.h"

namespace vellicor {

/// One property of an object that both documents have; an empty text stands for absent.
struct PropertyDifference {
    std::string key;
    std::string before;
    std::string after;
};

struct ObjectDifference {
    enum class Change { Added, Removed, Renamed, Changed };
    Change change;
    std::string kind;    ///< "table", "column", …
    std::string name;    ///< in the new document; in the old one when the object is gone
    std::string before;  ///< the former name when it is another one
    std::vector<PropertyDifference> properties;
    bool isLayout = false;  ///< only places, sizes, colours, labels and notes differ
};

/// Everything that differs, in the order of the new document, what is gone last.
class DocumentDifferences {
public:
    explicit DocumentDifferences(const ObjectMatcher& matcher);

    [[nodiscard]] const std::vector<ObjectDifference>& schema() const { return _schema; }
    [[nodiscard]] const std::vector<ObjectDifference>& layout() const { return _layout; }
    /// A line for each object that was found by its name: "table orders was matched by name".
    [[nodiscard]] const std::vector<std::string>& matchesByName() const { return _matchesByName; }

private:
    void compare(const ObjectMatcher& matcher, const ObjectMatch& match);
    void compareProperties(const ObjectMatcher& matcher, const ObjectMatch& match);

    std::vector<ObjectDifference> _schema;
    std::vector<ObjectDifference> _layout;
    std::vector<std::string> _matchesByName;
};

/// Lines for people, each ended; empty without differences.
[[nodiscard]] std::string differencesInWords(const std::vector<ObjectDifference>& differences);
/// A list of maps with "change", "kind", "name", "before" and "properties".
[[nodiscard]] Value differencesAsValue(const std::vector<ObjectDifference>& differences);

}  // namespace vellicor
