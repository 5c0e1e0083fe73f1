// vellicor/model/connectable_cardinality.cpp — the cardinalities that new links start with.
#include "vellicor/model/foreign_key.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"

namespace vellicor {

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
