// vellicor/model/link.cpp — the numbers of a link, their undo, and those that new links start with.
#include "vellicor/model/link.h"

#include "vellicor/model/table_component.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"

namespace vellicor {

bool SQLLink::isFKFieldValid(unsigned& errorBits) const {
    const std::size_t sources = sourceFieldNameList().size(), targets = targetFieldNameList().size();
    errorBits = 0;
    if (!targetTable()) errorBits |= foreignKeyError::noTargetTable;
    if (sources != targets) errorBits |= foreignKeyError::mismatchedColumns;
    if (sources == 0 && targets == 0) errorBits |= foreignKeyError::noColumns;
    return errorBits == 0;
}

// --- numbers

void SQLLink::setNumber(Number number, std::uint64_t value, std::string_view actionName) {
    SQLTableComponent& component = connectableComponent();
    if (UndoManager* manager = component.undoManager()) {
        manager->registerUndo(component.weak_from_this(),
                              [this, number, old = this->*number, actionName] { setNumber(number, old, actionName); });
        if (!actionName.empty()) manager->setActionName(localizedActionName(actionName));
    }
    this->*number = value;
}

void SQLLink::setDeleteAction(std::uint64_t action) { setNumber(&SQLLink::_deleteAction, action, {}); }

void SQLLink::setUpdateAction(std::uint64_t action) { setNumber(&SQLLink::_updateAction, action, {}); }

void SQLLink::setSourceCardinality(std::uint64_t cardinality) {
    setNumber(&SQLLink::_sourceCardinality, cardinality, "set Source cardinality");
}

void SQLLink::setDestinationCardinality(std::uint64_t cardinality) {
    setNumber(&SQLLink::_destinationCardinality, cardinality, "set Destination cardinality");
}

void SQLLink::setDefaultCardinalityForImport() { SQLConnectableCardinality::setDefaultCardinalityForImport(*this); }

void SQLLink::setDefaultCardinalityForCreatedKey() {
    SQLConnectableCardinality::setDefaultCardinalityForCreatedKey(*this);
}

// --- where they come from

namespace {

void setFromPreferences(SQLConnectable& object, const char* sourceKey, const char* destinationKey) {
    object.setSourceCardinality(static_cast<std::uint64_t>(Preferences::shared().integerForKey(sourceKey)));
    object.setDestinationCardinality(static_cast<std::uint64_t>(Preferences::shared().integerForKey(destinationKey)));
}

}  // namespace

void SQLConnectableCardinality::setDefaultCardinalityForImport(SQLConnectable& object) {
    setFromPreferences(object, prefs::defaultImportSourceCardinality, prefs::defaultImportDestinationCardinality);
}

void SQLConnectableCardinality::setDefaultCardinalityForCreatedKey(SQLConnectable& object) {
    setFromPreferences(object, prefs::defaultSourceCardinality, prefs::defaultDestinationCardinality);
}

}  // namespace vellicor
