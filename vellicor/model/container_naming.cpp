// vellicor/model/container_naming.cpp — free names among the objects of a document, and for its foreign keys.
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

    auto list = lockedList();
    if (_isTempContainer || _guests) _foreignKeyNames.forget();  // objects of others report there
    // Kept: the asking object counts, too, so a resolved key that asks for the name it has is given another.
    const SQLTable* table = isFKObject ? foreignKey.parentTable() : nullptr;
    if (!_foreignKeyNames.holds(proposal) &&
        !(table && SQLNameMatch::isObjectNamePresent(proposal, *table, &foreignKey)))
        return proposal;

    const IncrementingNameParts parts = SQLNameMatch::namePartsForIncrementing(proposal);
    const std::string base = parts.namePart + "_fk";
    const auto start = static_cast<std::uint64_t>(parts.numberPart ? integerValue(*parts.numberPart) : 1);
    const std::uint64_t number = _foreignKeyNames.firstFreeNumber(
        base, start, [table](const std::string& name) { return table && table->isFieldNamePresent(name); });
    return text("%@_%ld", base, static_cast<std::int64_t>(number));
}

}  // namespace vellicor
