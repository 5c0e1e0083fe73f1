// vellicor/model/object_name.cpp — dotted names with an alias.
#include "vellicor/model/object_name.h"

#include "vellicor/platform/text_format.h"

namespace vellicor {

SQLObjectName SQLObjectName::initWithBaseName(std::string_view baseName) {
    SQLObjectName name;
    name.setBaseName(baseName);
    return name;
}

void SQLObjectName::addQualifier(const OptionalText& qualifier) {
    if (qualifier) _qualifierList.push_back(*qualifier);
}

std::string SQLObjectName::fullyQualifiedName() const {
    std::vector<std::string> parts = _qualifierList;
    parts.push_back(_baseName);
    return joined(parts, ".");
}

std::string SQLObjectName::aliasString() const {
    return _alias && !_alias->empty() ? text(" AS %@", *_alias) : std::string();
}

std::string SQLObjectName::description() const { return text("%@%@", fullyQualifiedName(), aliasString()); }

}  // namespace vellicor
