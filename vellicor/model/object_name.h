// vellicor/model/object_name.h — a dotted, optionally aliased name as SQL text uses it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "vellicor/platform/text.h"

namespace vellicor {

/// A base name behind any number of qualifiers, outermost first.
class SQLObjectName {
public:
    static SQLObjectName objectNameWithBaseName(std::string_view baseName) { return initWithBaseName(baseName); }
    static SQLObjectName initWithBaseName(std::string_view baseName);

    /// A null qualifier is ignored.
    void addQualifier(const OptionalText& qualifier);
    [[nodiscard]] const std::vector<std::string>& qualifierList() const { return _qualifierList; }
    [[nodiscard]] const std::string& baseName() const { return _baseName; }
    void setBaseName(std::string_view baseName) { _baseName = baseName; }
    [[nodiscard]] const OptionalText& alias() const { return _alias; }
    void setAlias(const OptionalText& alias) { _alias = alias; }
    /// Qualifiers and base name joined with ".".
    [[nodiscard]] std::string fullyQualifiedName() const;
    /// " AS " and the alias; empty without one.
    [[nodiscard]] std::string aliasString() const;
    [[nodiscard]] std::string description() const;

private:
    std::string _baseName;
    std::vector<std::string> _qualifierList;
    OptionalText _alias;  // null when none
};

}  // namespace vellicor
