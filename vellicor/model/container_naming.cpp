// vellicor/model/container_naming.cpp — free names among the objects of a document, and for its foreign keys.
#include <unordered_set>

#include "vellicor/model/connectable.h"
#include "vellicor/model/container.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

std::string SQLContainer::getValidNameForObject(const SQLObject& object, const OptionalText& originalName) const {
    auto list = lockedList();
    return SQLNameMatch::getValidNameForObject(object, originalName, *this, true);
}

std::string SQLContainer::getValidName(const OptionalText& name) const {
    auto list = lockedList();
    return SQLNameMatch::getValidName(name, *this);
}

bool SQLContainer::isObjectNamePresent(std::string_view name) const {
    return SQLNameMatch::isObjectNamePresent(name, *this);
}

std::string SQLContainer::validNameForForeignKey(const SQLObject& foreignKey, std::string_view proposedName,
                                                 bool isFKObject) const {
    const std::string proposal(proposedName);
    if (!Preferences::shared().boolForKey(prefs::forceForeignKeyUnique)) return proposal;

    // Kept: the asking object counts, too, so a resolved key that asks for the name it has is given another.
    std::unordered_set<std::string> used;
    for (const SQLConnectable* key : foreignKeyList())
        if (key->targetTable()) used.insert(key->foreignKeyName());
    const SQLTable* table = isFKObject ? foreignKey.parentTable() : nullptr;
    if (!used.contains(proposal) && !(table && SQLNameMatch::isObjectNamePresent(proposal, *table, &foreignKey)))
        return proposal;

    const IncrementingNameParts parts = SQLNameMatch::namePartsForIncrementing(proposal);
    auto number = static_cast<std::uint64_t>(parts.numberPart ? integerValue(*parts.numberPart) : 1);
    for (;; ++number) {
        std::string candidate = parts.namePart + text("_fk_%ld", static_cast<std::int64_t>(number));
        if (!used.contains(candidate) && !(table && table->isFieldNamePresent(candidate))) return candidate;
    }
}

}  // namespace vellicor
